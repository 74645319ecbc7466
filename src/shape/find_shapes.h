#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "base/geometry.h"
#include "base/rounding.h"
#include "image/image_view.h"
#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// Which way round the contrast of a part may be, compared with the learnt image.
enum class Polarity : std::uint8_t {
  kSame,      ///< as learnt
  kReversed,  ///< bright and dark exchanged all over
  kEither,    ///< one of the two
  kMixed,  ///< each stretch of the outline on its own; looked for where nothing good is found as learnt
};

struct FindOptions {
  double angle_start = -kPi;     ///< radians; results turn clockwise from here on the screen
  double angle_extent = kTwoPi;  ///< radians, 0 to a whole turn
  double min_scale = 0.5;        ///< above 0
  double max_scale = 2.0;        ///< at least min_scale; the same fixes the scale
  double min_score = 0.36;       ///< 0 to 1; a match with exactly this score is reported
  int max_matches = 1;           ///< 0 for all
  double max_overlap = 0.5;      ///< share of the smaller part's area that two matches may share
  Polarity polarity = Polarity::kMixed;
  std::int64_t time_budget_us = 0;  ///< 0 for no limit
  int num_threads = 1;              ///< the same bits with any number
};

/// An instance of a pattern in a scene.
struct Match {
  Similarity scene_from_pattern;  ///< of the pattern's origin; angle in (-pi, pi]
  /// Covariance of (x, y, angle, scale), row by row: pixels, radians, 1.
  std::array<double, 16> covariance = {};
  double score = 0.0;      ///< 0 to 1
  double coverage = 0.0;   ///< share of the visible edge points that the scene has
  double clutter = 0.0;    ///< edges inside the outline that the pattern has not, per edge point
  double fit_error = 0.0;  ///< RMS distance of the edges, scene pixels
  double contrast = 0.0;   ///< strength of the edges relative to the learnt ones
  bool is_reversed =
      false;  ///< most of the edges run from bright to dark where learnt the other way
  double share_outside = 0.0;  ///< of the edge points, beyond the scene's border
};

/// The longest side of an image.
inline constexpr std::int32_t kMaxImageSide = 32767;

/// Most pixels of an image.
inline constexpr std::int64_t kMaxImagePixels = 100'000'000;

enum class FindStatus : std::uint8_t { kOk, kEmptyImage, kBadOptions, kTooLarge };

/// Time of each stage, microseconds.
struct StageTimes {
  double pyramid = 0.0;
  double response_maps = 0.0;
  double coarse_search = 0.0;
  double tracking = 0.0;
  double scoring = 0.0;
  double refinement = 0.0;
  double total = 0.0;
};

struct FindResult {
  FindStatus status = FindStatus::kOk;
  std::string_view message;        ///< a sentence where the status is not kOk
  std::span<const Match> matches;  ///< best first; lives in the workspace until its next use
  bool timed_out = false;
  StageTimes times_us;
};

/// Buffers of a search. A search with a workspace that has served one of its size allocates nothing.
/// One search at a time may use it.
class Workspace {
 public:
  Workspace();
  Workspace(Workspace&&) noexcept;
  Workspace& operator=(Workspace&&) noexcept;
  ~Workspace();

  struct Buffers;
  Buffers& buffers() { return *buffers_; }

 private:
  std::unique_ptr<Buffers> buffers_;
};

/// Finds instances of a pattern. What stood in the workspace changes no bit of the result.
FindResult FindShapes(const ShapeModel& model, const ImageView& scene, const FindOptions& options,
                      Workspace& workspace);

/// The score of the best match before any refinement, 0 where there is none. Options as for FindShapes, and valid.
double HighestScore(const ShapeModel& model, const ImageView& scene, const FindOptions& options,
                    Workspace& workspace);

}  // namespace orvandel::shape
