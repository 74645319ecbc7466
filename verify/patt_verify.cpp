#include "verify/patt_verify.h"

#include <utility>

#include "platform/numbers.h"
#include "verify/shared_array.h"

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
  std::swap(matchedPositions, copy.matchedPositions);
  angleTolerance = copy.angleTolerance;
  ignorePolarity = copy.ignorePolarity;
  searchRadius = copy.searchRadius;
  std::swap(pointX, copy.pointX);
  std::swap(pointY, copy.pointY);
  std::swap(pointDir, copy.pointDir);
  pointCount = copy.pointCount;
  probeCount = copy.probeCount;
  return *this;
}

CPattVerify::~CPattVerify() {
  for (double** array : {&pointX, &pointY, &pointDir}) {
    orvandel::ReleaseArray(*array);
    *array = nullptr;
  }
}
