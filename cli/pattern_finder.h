#pragma once

#include <string>
#include <vector>

#include "base/geometry.h"
#include "cli/contour_set.h"
#include "cli/image_input.h"
#include "cli/search_options.h"
#include "search/segment_model.h"
#include "search/segment_search.h"

namespace orvandel::cli {

enum class FindStatus {
  kFound,
  kBelowAcceptScore,  ///< the best pose is not good enough
  kNoContours,        ///< nothing to match in the scene
  kNoLines,           ///< no straight edge in the scene
  kTimedOut,          ///< no pose was tried
};

/// The status as reports spell it, "below_accept_score".
const char* StatusWord(FindStatus status);

struct FindResult {
  FindStatus status = FindStatus::kTimedOut;
  /// Of pattern points measured from the reference point, the best one, where `HasPose`. Pixels are
  /// counted as the engine does: the centre of the top-left one is (0.5, 0.5).
  Similarity scene_from_pattern;
  double score = 0;    ///< percent
  double time_ms = 0;  ///< of the search alone, without reading the file

  bool IsFound() const { return status == FindStatus::kFound; }
  bool HasPose() const { return IsFound() || status == FindStatus::kBelowAcceptScore; }
};

/// What training learnt.
struct PatternFacts {
  int width = 0;  ///< of the pattern image, pixels
  int height = 0;
  int num_contours = 0;
  int num_points = 0;  ///< of all contours
  int num_lines = 0;   ///< straight segments
  int edge_threshold = 0;
  Point reference;  ///< mean of the contour points, pattern pixels
};

/// One line of it, as in "240 x 200 pixels, 3 contours of 812 points, ...".
std::string Describe(const PatternFacts& facts);

/// A pattern that can be looked for in many scenes.
class PatternFinder {
 public:
  explicit PatternFinder(const SearchOptions& options) : options_(options) {}
  PatternFinder(const PatternFinder&) = delete;
  PatternFinder& operator=(const PatternFinder&) = delete;

  /// Learns the pattern. Throws FileError, with what to change, when it has no contour or no
  /// straight edge.
  void Train(ImageFile pattern);

  /// Learns the pattern that `Save` wrote. Throws FileError as `Train` does, and when the file
  /// cannot be read.
  void Load(const std::string& name);

  /// Writes the pattern to the file that `KnowledgeFile` tells. Throws FileError.
  void Save(const std::string& name) const;

  /// Looks for the pattern; overwrites the scene's pixels.
  FindResult Find(ImagePtr scene);

  PatternFacts Facts() const;

  /// Of the pattern.
  std::vector<Polyline> Contours() const { return PolylinesOf(pattern_contours_); }

 private:
  SearchOptions options_;
  ImageFile pattern_;
  CrawlOptions crawl_;  ///< with the threshold that the pattern was learnt with
  ContourHandle pattern_contours_;
  SegmentModel model_;
  ImageEdges scene_edges_;  ///< of the last scene
};

/// The file that holds the pattern called `name`.
std::string KnowledgeFile(const std::string& name);

}  // namespace orvandel::cli
