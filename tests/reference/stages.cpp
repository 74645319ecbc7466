#include "tests/reference/stages.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "contours/crawler_adapter.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"
#include "tests/reference/crawl.h"
#include "tests/reference/line_extraction.h"
#include "tests/reference/resampling.h"
#include "tests/reference/smoothing.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

void Crawl(void* set, tImage* image, int edge_threshold, int min_size, int max_size) {
  ctd_crawl(set, image, edge_threshold, min_size, max_size);
}

void Smooth(void* set) {
  ctd_average(set);
}

void Resample(void* set) {
  ctd_resample(set);
}

std::vector<CLineSegment> ExtractSegments(void* set) {
  CLineExtracter lines;
  lines.Extract(set);
  return std::move(lines.segments);
}

double ScoreAtPoints(const CPattVerify& verifier, const CEdgeImgComplement& edges,
                     const ReferencePose& pose) {
  // Scoring only reads, but the published function is not const.
  return const_cast<CPattVerify&>(verifier).ScoreAtVerifyPoints(
      &edges, pose.tx, pose.ty, pose.angle, pose.scale, pose.cx, pose.cy);
}

double ScoreAlongContours(const CPattVerify& verifier, void* contours,
                          const CEdgeImgComplement& edges, const ReferencePose& pose) {
  return const_cast<CPattVerify&>(verifier).ScoreAlongContours(
      contours, &edges, pose.tx, pose.ty, pose.angle, pose.scale, pose.cx, pose.cy, 0);
}

void SetPixels(const Grid& values, tImage& image) {
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x)
      image.row[y][x] = static_cast<std::uint8_t>(At(values, x, y));
  }
}

}  // namespace

void ReferenceSubCanny(tImage* image, int threshold, CEdgeImgComplement& edges) {
  if (image->height < 5) return;
  const std::vector<ReferenceEdgePoint> points = ReferenceSubCanny(GridOf(*image), threshold);
  SetPixels(ReferenceEdgeMap(image->width, image->height, points), *image);
  std::memset(edges.valid, 0, static_cast<std::size_t>(edges.map_size));
  for (const ReferenceEdgePoint& p : points)
    edges.Store(ReferenceX(p), ReferenceY(p), ReferenceAngle(p));
}

namespace {

void ReferenceCrawl(void* set, tImage* image, int edge_threshold, int min_size, int max_size) {
  CCrawler& fields = SetOf(set);
  fields.edge_threshold = edge_threshold;
  fields.min_size = min_size;
  fields.max_size = max_size;
  if (fields.edgeIm == nullptr) fields.edgeIm = new CEdgeImgComplement;
  if (fields.edgeIm->SetSize(image->width, image->height) != 0) throw std::bad_alloc();
  ReferenceSubCanny(image, edge_threshold, *fields.edgeIm);

  Grid map = GridOf(*image);
  StoreContours(MakeContours(ReferenceTrace(map, fields.edgeIm, min_size, max_size)), fields);
  SetPixels(map, *image);
}

void ReferenceSmooth(void* set) {
  for (int c = 0; c < ctd_contour_count(set); ++c) {
    for (double* values : {ctd_contour_xa(set, c), ctd_contour_ya(set, c)}) {
      const std::vector<double> smoothed =
          ReferenceSmoothed({values, values + ctd_contour_size(set, c)});
      std::copy(smoothed.begin(), smoothed.end(), values);
    }
  }
}

std::vector<TestPoint> PointsOf(void* set, int contour) {
  std::vector<TestPoint> points;
  for (int k = 0; k < ctd_contour_size(set, contour); ++k) {
    points.push_back({ctd_contour_x(set, contour, k), ctd_contour_y(set, contour, k),
                      ctd_contour_g(set, contour, k), ctd_contour_f(set, contour, k)});
  }
  return points;
}

/// The set's points are allocated for more than there are.
void ReferenceResample(void* set) {
  const CCrawler& fields = SetOf(set);
  const int num_in = fields.point_count;
  if (num_in < 1) return;
  std::vector<TestContour> contours;
  for (int c = 0; c < fields.contour_count; ++c) {
    contours.push_back({ReferenceResampled(PointsOf(set, c), fields.step, fields.min_dist),
                        ctd_contour_closed(set, c) != 0});
  }
  StoreContours(MakeContours(contours), SetOf(set));
  SetOf(set).point_capacity = ReferenceCapacity(num_in, fields.point_count);
}

std::vector<CLineSegment> ReferenceExtractSegments(void* set) {
  return ReferenceExtract(CLineExtracter(), set);
}

double ReferenceAtPoints(const CPattVerify& verifier, const CEdgeImgComplement& edges,
                         const ReferencePose& pose) {
  return ReferenceScoreAtVerifyPoints(verifier, edges, pose);
}

double ReferenceAlongContours(const CPattVerify& verifier, void* contours,
                              const CEdgeImgComplement& edges, const ReferencePose& pose) {
  return ReferenceScoreAlongContours(verifier, contours, edges, pose, 1);
}

}  // namespace

const Stages kLibraryStages = {Crawl,           Smooth,        Resample,
                               ExtractSegments, ScoreAtPoints, ScoreAlongContours};

const Stages kReferenceStages = {ReferenceCrawl,    ReferenceSmooth,
                                 ReferenceResample, ReferenceExtractSegments,
                                 ReferenceAtPoints, ReferenceAlongContours};

}  // namespace orvandel::test
