#pragma once

#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "contours/contour_set.h"
#include "contours/crawl.h"
#include "contours/resampling.h"
#include "lines/line_segment.h"
#include "orvandel/classic/edge_record.h"
#include "platform/grey_rows.h"
#include "search/deadline.h"
#include "search/segment_model.h"
#include "search/segment_search_options.h"

namespace orvandel {

/// What the search reads of a scene, whoever owns it.
struct SceneEdges {
  ContourSetView contours;          ///< conditioned; their flags are overwritten
  const CEdgeImgComplement* edges;  ///< edge points as they were crawled; may be null
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

  int num_contours = 0;                     ///< of the scene
  std::vector<LineSegment> scene_segments;  ///< most points first
  int NumSegments() const { return static_cast<int>(scene_segments.size()); }

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
/// @throws std::bad_alloc
SegmentMatch FindBySegments(const SegmentModelView& model, const SceneEdges& scene,
                            const SegmentSearchOptions& options, const Deadline& deadline);

/// How contours are found, in patterns and scenes alike.
struct ContourOptions {
  CrawlOptions crawl;
  ResampleOptions resample;
};

/// Contours and edge points of an image, with their memory, which the next image of the size uses again.
struct ImageEdges {
  ContourSet contours;
  CEdgeImgComplement edges;

  SceneEdges View() const { return {contours.View(), &edges}; }
};

/// The contours of an image as patterns are learnt from and found in. An image of `kCrawledSizeLimit` pixels
/// or more either way has none.
///
/// @param image  overwritten.
/// @throws std::bad_alloc
void ExtractEdges(const GreyRows& image, const ContourOptions& options, ImageEdges& edges);

/// The whole way from an image, within `options.timeout_us`.
///
/// @param image  overwritten.
/// @param edges  receives the image's.
/// @throws std::bad_alloc
SegmentMatch FindInImage(const SegmentModelView& model, const GreyRows& image,
                         const ContourOptions& contour_options, const SegmentSearchOptions& options,
                         ImageEdges& edges);

}  // namespace orvandel
