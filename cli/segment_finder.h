#pragma once

#include <string>
#include <vector>

#include "cli/contour_set.h"
#include "cli/pattern_finder.h"
#include "search/segment_model.h"
#include "search/segment_search.h"

namespace orvandel::cli {

/// A pattern that the segment engine looks for.
class SegmentFinder : public PatternFinder {
 public:
  explicit SegmentFinder(const SearchOptions& options) : options_(options) {}

  void Train(ImageFile pattern) override;
  FindResult Search(const ImageFile& scene, int max_matches) override;
  PatternFacts Facts() const override;
  std::vector<Polyline> Outline() const override;

  /// Writes the pattern to the file that `KnowledgeFile` tells. Throws FileError.
  void Save(const std::string& name) const;

 private:
  SearchOptions options_;
  ImageFile pattern_;
  CrawlOptions crawl_;  ///< with the threshold that the pattern was learnt with
  ContourHandle pattern_contours_;
  SegmentModel model_;
  ImageEdges scene_edges_;  ///< of the last scene
  double learning_ms_ = 0;
};

/// The file that holds the pattern called `name`.
std::string KnowledgeFile(const std::string& name);

}  // namespace orvandel::cli
