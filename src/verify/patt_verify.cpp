// The published verifier: the method's functions on arrays that its copies share.

#include "orvandel/classic/patt_verify.h"

#include <algorithm>

#include "contours/crawler_adapter.h"
#include "verify/pose_score.h"
#include "verify/shared_array.h"
#include "verify/verifier_view.h"

namespace orvandel {
namespace {

/// Arrays of new points. One after the other: should an array fail, those before it stay replaced, and there are no
/// points.
void ReplaceArrays(CPattVerify& verifier, std::int32_t count) {
  verifier.pointCount = 0;
  for (double** array : {&verifier.pointX, &verifier.pointY, &verifier.pointDir}) {
    ReleaseArray(*array);
    *array = nullptr;
    *array = new double[static_cast<std::size_t>(count)];
  }
}

}  // namespace

VerificationPointsView PointsOf(const CPattVerify& verifier) {
  const auto count = static_cast<std::size_t>(std::max(verifier.pointCount, 0));
  return {{verifier.pointX, count}, {verifier.pointY, count}, {verifier.pointDir, count}};
}

MatchOptions MatchOptionsOf(const CPattVerify& verifier) {
  return {verifier.angleTolerance, verifier.ignorePolarity != 0,
          std::clamp(verifier.searchRadius, 0, kLargestRadius)};
}

void SetPoints(CPattVerify& verifier, const VerificationPointsView& points) {
  const auto count = static_cast<std::int32_t>(points.size());
  ReplaceArrays(verifier, count);
  std::copy(points.x.begin(), points.x.end(), verifier.pointX);
  std::copy(points.y.begin(), points.y.end(), verifier.pointY);
  std::copy(points.direction.begin(), points.direction.end(), verifier.pointDir);
  verifier.pointCount = count;
}

void ReleasePoints(CPattVerify& verifier) {
  verifier.pointCount = 0;
  for (double* array : {verifier.pointX, verifier.pointY, verifier.pointDir})
    ReleaseArray(array);
  verifier.pointX = verifier.pointY = verifier.pointDir = nullptr;
}

}  // namespace orvandel

CPattVerify::CPattVerify()
    : angleTolerance(orvandel::MatchOptions{}.angle_tolerance),
      ignorePolarity(0),
      searchRadius(orvandel::MatchOptions{}.radius),
      pointX(nullptr),
      pointY(nullptr),
      pointDir(nullptr),
      pointCount(0),
      probeCount(0) {}

CPattVerify::CPattVerify(const CPattVerify& other)
    : matchedPositions(other.matchedPositions),
      angleTolerance(other.angleTolerance),
      ignorePolarity(other.ignorePolarity),
      searchRadius(other.searchRadius),
      pointX(other.pointX),
      pointY(other.pointY),
      pointDir(other.pointDir),
      pointCount(other.pointCount),
      probeCount(other.probeCount) {
  orvandel::ShareArrays({pointX, pointY, pointDir});
}

CPattVerify& CPattVerify::operator=(const CPattVerify& other) {
  CPattVerify copy(other);
  matchedPositions.swap(copy.matchedPositions);
  angleTolerance = copy.angleTolerance;
  ignorePolarity = copy.ignorePolarity;
  searchRadius = copy.searchRadius;
  orvandel::ReleasePoints(*this);
  pointX = copy.pointX;
  pointY = copy.pointY;
  pointDir = copy.pointDir;
  copy.pointX = copy.pointY = copy.pointDir = nullptr;
  pointCount = copy.pointCount;
  probeCount = copy.probeCount;
  return *this;
}

CPattVerify::~CPattVerify() {
  orvandel::ReleasePoints(*this);
}

int CPattVerify::ChooseVerifyPoints(void* contours, double fraction, int cap) {
  const orvandel::ContourSetView view = orvandel::ViewOf(orvandel::SetOf(contours));
  const orvandel::VerificationPointOptions options = {fraction, cap};
  const std::int32_t count = orvandel::CountVerificationPoints(view, options);
  orvandel::ReplaceArrays(*this, count);
  orvandel::CopyVerificationPoints(view, options, pointX, pointY, pointDir);
  pointCount = count;
  return 0;
}

double CPattVerify::ScoreAtVerifyPoints(const CEdgeImgComplement* edges, double tx, double ty,
                                        double angle, double scale, double cx, double cy) {
  return orvandel::ScoreAtPoints(orvandel::PointsOf(*this), {cx, cy}, {tx, ty, angle, scale}, edges,
                                 orvandel::MatchOptionsOf(*this));
}

double CPattVerify::ScoreAlongContours(void* contours, const CEdgeImgComplement* edges, double tx,
                                       double ty, double angle, double scale, double cx, double cy,
                                       int step) {
  return orvandel::ScoreAlongContours(orvandel::ViewOf(orvandel::SetOf(contours)), step, {cx, cy},
                                      {tx, ty, angle, scale}, edges,
                                      orvandel::MatchOptionsOf(*this));
}
