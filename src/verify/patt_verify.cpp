#include "orvandel/classic/patt_verify.h"

#include "base/rounding.h"
#include "verify/shared_array.h"

namespace orvandel {

void ReleasePoints(CPattVerify& verifier) {
  verifier.pointCount = 0;
  for (double* array : {verifier.pointX, verifier.pointY, verifier.pointDir})
    ReleaseArray(array);
  verifier.pointX = verifier.pointY = verifier.pointDir = nullptr;
}

}  // namespace orvandel

CPattVerify::CPattVerify()
    : angleTolerance(orvandel::kPi / 6),
      ignorePolarity(0),
      searchRadius(5),
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
