#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "evaluation/image_file.h"

namespace orvandel::evaluation {

/// A learnt pattern as its poses speak of it. The centre of the pattern image's top-left pixel is
/// (0, 0).
struct PatternFrame {
  int width = 0;  ///< of the pattern image, pixels
  int height = 0;
  Point origin;  ///< the pattern pixel that poses tell the place of
};

/// One place where a pattern may be.
struct Match {
  Similarity scene_from_pattern;  ///< of pattern points measured from the frame's origin
  double score = 0;               ///< as the finder counts it
  bool is_accepted = false;       ///< the finder holds it for the pattern
  /// Of (x, y, angle, scale), row by row: pixels, radians, 1. Nothing where the finder tells none.
  std::optional<std::array<double, 16>> covariance = {};
};

/// What a finder says of one scene.
struct Finding {
  std::string status;          ///< a word for tables, such as "found" or "timed_out"
  std::vector<Match> matches;  ///< best first; with those that were not accepted
  double time_ms = 0;          ///< of the search alone, without reading the file
  bool timed_out = false;      ///< the finder ended before it had looked everywhere
  int score_decimals = 3;      ///< that tables print

  bool HasAccepted() const { return !matches.empty() && matches.front().is_accepted; }
};

/// Whatever can be measured: it learns a pattern from an image and finds it in others. Which engine
/// is behind it, and with which options, is its own affair.
class Finder {
 public:
  virtual ~Finder() = default;

  /// Learns a pattern, which is looked for until the next call. Throws FileError, with what to
  /// change, when there is nothing in the image to learn.
  virtual PatternFrame Learn(const ImageFile& pattern) = 0;

  /// Looks for the learnt pattern. The scene is not changed.
  virtual Finding Find(const ImageFile& scene) = 0;

  /// The same for several instances, up to so many; 0 for all. A finder that knows one best place
  /// only tells that.
  virtual Finding FindSeveral(const ImageFile& scene, [[maybe_unused]] int max_matches) {
    return Find(scene);
  }
};

}  // namespace orvandel::evaluation
