#pragma once

#include <vector>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {

/// Whether edges are stored in the pixels (column, row) of a scene that starts out empty.
class SceneEdges {
 public:
  SceneEdges(int width, int height) { record_.SetSize(width, height); }

  /// Puts an edge of the given direction into the middle of a pixel.
  void Put(int column, int row, double direction) {
    record_.Store(column + 0.5, row + 0.5, direction);
  }
  const CEdgeImgComplement* get() const { return &record_; }
  const CEdgeImgComplement& operator*() const { return record_; }

 private:
  CEdgeImgComplement record_;
};

/// One open contour through the given points.
inline ContourHandle SetOfPoints(const std::vector<TestPoint>& points) {
  return MakeSet({TestContour{points, false}});
}

/// A verifier whose verification points are all the points of a set.
inline CPattVerify VerifierOfAll(void* contours) {
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(contours, 1.0, 1000000);
  return verifier;
}

/// A pattern of a single point at its own reference point, so that a pose's position is where the
/// point lands.
class OnePoint {
 public:
  explicit OnePoint(double direction)
      : contours_(SetOfPoints({{0, 0, direction, 0}})), verifier_(VerifierOfAll(contours_.get())) {}

  /// What the point earns at a scene position, 0 to 1, by the verification points.
  double CreditAt(const SceneEdges& scene, double x, double y, double angle = 0) {
    return verifier_.ScoreAtVerifyPoints(scene.get(), x, y, angle, 1, 0, 0) / 100;
  }
  /// The same along the contours.
  double CreditAlong(const SceneEdges& scene, double x, double y, double angle = 0) {
    return verifier_.ScoreAlongContours(contours_.get(), scene.get(), x, y, angle, 1, 0, 0, 1) /
           100;
  }
  CPattVerify& verifier() { return verifier_; }

 private:
  ContourHandle contours_;
  CPattVerify verifier_;
};

}  // namespace orvandel::test
