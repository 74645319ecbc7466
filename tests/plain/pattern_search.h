#pragma once

#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "contours/contour_handle.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/line_extracter.h"
#include "orvandel/classic/line_segment.h"
#include "orvandel/classic/patt_verify.h"
#include "search/contour_preparation.h"
#include "search/segment_search.h"
#include "tests/plain/probe_count.h"

// The plain chain: image -> edges -> contours -> lines -> poses, each stage in the form in which
// its method is told, without any of the tricks that make it fast.
//
// The library's stages are compared with these, bit for bit in the tests and by time in the
// benchmarks. So this code stays as it is when a stage is made faster; it changes only together
// with what a stage means. It shares with the library the data types, the gradient tables, the mean
// of the contour points and the choice of verification points.
namespace orvandel::plain {

/// The parameters of `QRSIS`, with its defaults.
struct SearchOptions {
  CrawlOptions crawl;
  SegmentSearchOptions search;
};

/// A trained pattern.
struct Pattern {
  ContourHandle contours{ctd_create()};
  std::vector<CLineSegment> segments;
  CPattVerify verifier;
  Point reference;  ///< mean of the contour points, pattern pixels
};

/// Probes by the step of the search that made them.
struct SearchCounts {
  ProbeCount coarse;
  ProbeCount refinement;
  ProbeCount final_score;
};

/// From an image to smoothed, evenly spaced contours, longest first. Returns their number.
int PrepareContours(void* contours, tImage* image, const CrawlOptions& options);

/// As `LearnSegmentModel`, from an image, which is overwritten.
LearningOutcome Train(Pattern& pattern, tImage* image, const CrawlOptions& options);

/// As `FindBySegments` of a trained pattern, without its counts.
///
/// @param scene_contours  a `ctd_` handle; receives the scene's contours and edge record.
/// @param image           8-bit grey; overwritten.
/// @param counts          null, or what the search cost is added to it.
SegmentMatch Find(const Pattern& pattern, void* scene_contours, tImage* image,
                  const SearchOptions& options, SearchCounts* counts = nullptr);

}  // namespace orvandel::plain
