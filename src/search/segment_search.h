#pragma once

#include <cstdint>

#include "base/geometry.h"
#include "orvandel/classic/crawler.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/line_extracter.h"
#include "search/contour_preparation.h"
#include "search/deadline.h"
#include "search/segment_model.h"
#include "search/segment_search_options.h"

namespace orvandel {

/// A scene, and room for its segments. Both are used again for the next scene, so that their memory is.
struct SceneEdges {
  CCrawler& contours;     ///< as `PrepareContours` leaves them, with their edge record
  CLineExtracter& lines;  ///< receives the scene's segments
};

enum class SegmentSearchOutcome {
  kPoseDetermined,  ///< the best pose met, whatever its score
  kOutOfTime,       ///< before a pose was tried
  kNoContour,       ///< in the scene
  kNoSegment,       ///< no straight edge in the scene is long enough
};

/// What a search found, and what it cost.
struct SegmentMatch {
  SegmentSearchOutcome outcome = SegmentSearchOutcome::kNoContour;
  Similarity scene_from_pattern = {0.0, 0.0, 0.0, 0.0};  ///< angle not normalised
  double score = 0.0;                                    ///< percent, along the pattern's contours
  double coarse_score = 0.0;     ///< of the best hypothesis, at the verification points
  bool ran_out_of_time = false;  ///< before the coarse search, or in it

  int num_contours = 0;  ///< of the scene
  int num_segments = 0;
  std::int64_t num_poses = 0;      ///< scored in the coarse search
  std::int64_t num_probes = 0;     ///< looks at pixels of the edge record while poses were tried
  std::int64_t num_map_looks = 0;  ///< looks at the spread orientation map
};

/// Finds a pattern in a scene: pairs its segments with the scene's, tries the poses that these propose,
/// refines the best one and scores it along all contours of the pattern.
///
/// The deadline is looked at before and behind the extraction of segments and, in the coarse search, after
/// each pose; refinement and final score always follow. Nothing is allocated while poses are tried.
///
/// @param scene  the flags of its contours are overwritten: 1 on a straight range, else 0.
/// @throws std::bad_alloc
SegmentMatch FindBySegments(const SegmentModelView& model, const SceneEdges& scene,
                            const SegmentSearchOptions& options, const Deadline& deadline);

/// The whole way from an image, within `options.timeout_us`.
///
/// @param image  8-bit grey; overwritten. One that cannot be crawled leaves the scene's earlier contours to be
///               searched.
/// @param scene  receives the image's contours, edges and segments.
/// @throws std::bad_alloc
SegmentMatch FindBySegments(const SegmentModelView& model, tImage* image,
                            const CrawlOptions& crawl_options, const SceneEdges& scene,
                            const SegmentSearchOptions& options);

}  // namespace orvandel
