#pragma once

#include <vector>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/line_segment.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/reference/scoring.h"

namespace orvandel::test {

/// The steps that a search is made of, on `ctd_` handles.
struct Stages {
  void (*crawl)(void* set, tImage* image, int edge_threshold, int min_size, int max_size);
  void (*smooth)(void* set);
  void (*resample)(void* set);
  std::vector<CLineSegment> (*extract_segments)(void* set);
  double (*score_at_points)(const CPattVerify& verifier, const CEdgeImgComplement& edges,
                            const ReferencePose& pose);
  double (*score_along_contours)(const CPattVerify& verifier, void* contours,
                                 const CEdgeImgComplement& edges, const ReferencePose& pose);
};

/// The library's, through the published interface.
extern const Stages kLibraryStages;

/// The reference forms: each step as it is told, without any of the tricks that make it fast. They stay as they
/// are when a stage is made faster, and change only together with what a stage means.
extern const Stages kReferenceStages;

/// As `SubCanny`, with the reference form.
///
/// @param edges  of the image's size.
void ReferenceSubCanny(tImage* image, int threshold, CEdgeImgComplement& edges);

}  // namespace orvandel::test
