#pragma once

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/support/images.h"
#include "tests/support/same_bits.h"

namespace orvandel::test {

/// What a host reads after a search.
struct Found {
  int status = 0;
  double x = 0;
  double y = 0;
  double angle = 0;
  double scale = 0;
  double score = 0;
};

inline Found ResultOf(QRSIS& search, int status) {
  Found found;
  found.status = status;
  search.GetFoundPattData(&found.x, &found.y, &found.angle, &found.scale, &found.score);
  return found;
}

/// Searches a copy of the scene, so that the scene stays.
inline Found LookFor(QRSIS& search, const ImagePtr& scene) {
  const ImagePtr copy = CopyOf(scene);
  const int status = search.LookForIt(copy.get());
  return ResultOf(search, status);
}

/// Trains on a copy of the pattern, so that the pattern stays.
inline int TrainOn(QRSIS& search, const ImagePtr& pattern) {
  const ImagePtr copy = CopyOf(pattern);
  return search.TrainIt(copy.get());
}

/// A search object that is initialised and trained.
class TrainedSearch : public QRSIS {
 public:
  explicit TrainedSearch(const ImagePtr& pattern) {
    Initialize();
    EXPECT_EQ(TrainOn(*this, pattern), 0);
  }
};

inline void ExpectSameResult(const Found& actual, const Found& expected) {
  EXPECT_EQ(actual.status, expected.status);
  EXPECT_TRUE(SameBits(actual.x, expected.x)) << "x";
  EXPECT_TRUE(SameBits(actual.y, expected.y)) << "y";
  EXPECT_TRUE(SameBits(actual.angle, expected.angle)) << "angle";
  EXPECT_TRUE(SameBits(actual.scale, expected.scale)) << "scale";
  EXPECT_TRUE(SameBits(actual.score, expected.score)) << "score";
}

inline void ExpectZeroResult(const Found& actual, int status) {
  ExpectSameResult(actual, {status, 0, 0, 0, 0, 0});
}

}  // namespace orvandel::test
