#pragma once

#include <cstdint>
#include <vector>

#include "orvandel/classic/export.h"

class CEdgeImgComplement;

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(push, 4)
#endif

/// Learns a sparse set of verification points from a pattern's contours and scores poses against
/// the edges of a scene.
///
/// A pose (tx, ty, angle, scale) with the pattern's reference point (cx, cy) lays the pattern point
/// (x, y) at
///   column = tx + scale * (cos(angle) * (x - cx) - sin(angle) * (y - cy))
///   row    = ty + scale * (sin(angle) * (x - cx) + cos(angle) * (y - cy))
/// and expects its gradient direction g there as g - angle. A point earns 1 where the scene has an edge
/// of that direction in its very pixel, 0.98 down to 0.8 where it lies 1 to 5 pixels away along the
/// edge normal, else 0.
///
/// A score is the points' mean credit in percent, 0 to 100; not a number without points, so that no
/// acceptance test passes. Scoring reads only; several threads may score with one object.
class ORVANDEL_API CPattVerify {
 public:
  struct MatchedPosition {
    double x;
    double y;
  };

  CPattVerify();
  /// A copy shares the point arrays with its source; the last of them releases the arrays.
  CPattVerify(const CPattVerify& other);
  CPattVerify& operator=(const CPattVerify& other);
  virtual ~CPattVerify();

  /// Replaces the verification points: about `fraction` of each contour's points, evenly spaced.
  ///
  /// @param contours  a `ctd_` handle.
  /// @param fraction  of a contour's points, 0 to 1; at least one point a contour is taken.
  /// @param cap       most points wanted of a contour; rounding may add two.
  /// @return  0. Out of memory surfaces as std::bad_alloc, and leaves the object without points.
  int ChooseVerifyPoints(void* contours, double fraction, int cap);

  /// Score of a pose at the verification points.
  ///
  /// @param edges  the scene's edge record; null counts as a scene without edges.
  /// @param tx,ty  scene position of the reference point, pixels.
  /// @param angle  radians.
  /// @param scale  scene size over pattern size.
  /// @param cx,cy  reference point, in the pattern's pixels.
  double ScoreAtVerifyPoints(const CEdgeImgComplement* edges, double tx, double ty, double angle,
                             double scale, double cx, double cy);

  /// Score of a pose at every `step`-th point of every contour of a set; a step below 1 counts as
  /// 1.
  double ScoreAlongContours(void* contours, const CEdgeImgComplement* edges, double tx, double ty,
                            double angle, double scale, double cx, double cy, int step);

  std::vector<MatchedPosition> matchedPositions;  ///< carried, not used
  double angleTolerance;        ///< radians, pi/6; directions differing by it or more do not match
  std::int32_t ignorePolarity;  ///< 0; else opposite directions match too
  std::int32_t searchRadius;    ///< pixels along the normal, 5; 0 to 9
  double* pointX;               ///< verification points, pattern pixels
  double* pointY;
  double* pointDir;         ///< gradient directions, radians
  std::int32_t pointCount;  ///< length of the three arrays
  std::int32_t probeCount;  ///< carried, 0
};

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(pop)
#endif
