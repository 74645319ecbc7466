#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "tests/support/grids.h"

// The edge detector once more, written to be read: whole images of ints, formulas in place of
// tables, one step after another. The library has to give the same bits.
namespace orvandel::test {

/// Direction of the gradient (gx, gy), y upwards: a full turn in 256 codes, 0 along +x.
inline int ReferenceDirectionCode(int gx, int gy) {
  const double turn = ArcTan2(double(gy), double(gx)) * 128.0 / kPi;
  return static_cast<int>(std::floor(gy >= 0 ? turn : turn + 256.0));
}

inline int ReferenceMagnitude(int a, int b) {
  return static_cast<int>(0.7 * std::sqrt(double(a * a + b * b)));
}

/// Mean of 3 x 3 pixels, rounded down. Beside the first and last column the border pixel counts
/// twice; the first and last row stay 0.
inline Grid ReferenceSmooth(const Grid& image) {
  const int width = Width(image);
  const int height = Height(image);
  Grid smooth = MakeGrid(width, height);
  for (int y = 1; y <= height - 2; ++y) {
    for (int x = 0; x < width; ++x) {
      int sum = 0;
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx)
          sum += At(image, std::clamp(x + dx, 0, width - 1), y + dy);
      }
      At(smooth, x, y) = sum / 9;
    }
  }
  return smooth;
}

struct ReferenceCandidate {
  int x = 0;
  int y = 0;
  int direction = 0;  // code 0..255
  int sector = 0;
};

struct ReferenceCandidates {
  std::vector<ReferenceCandidate> list;  // row by row
  Grid magnitude;                        // 0 where the pixel is no candidate
};

inline ReferenceCandidates ReferenceFindCandidates(const Grid& image, int threshold) {
  const Grid smooth = ReferenceSmooth(image);
  ReferenceCandidates found;
  found.magnitude = MakeGrid(Width(image), Height(image));
  for (int y = 2; y <= Height(image) - 3; ++y) {
    for (int x = 2; x <= Width(image) - 3; ++x) {
      const int above_left = At(smooth, x - 1, y - 1);
      const int above_right = At(smooth, x + 1, y - 1);
      const int below_left = At(smooth, x - 1, y + 1);
      const int below_right = At(smooth, x + 1, y + 1);
      // C++ division truncates toward zero, which is what the detector is built on.
      const int gv = (above_left + above_right - below_left - below_right) / 2;
      const int gh = (above_right + below_right - above_left - below_left) / 2;
      const int magnitude = ReferenceMagnitude(std::abs(gv), std::abs(gh));
      if (magnitude < threshold) continue;

      const int direction = ReferenceDirectionCode(gh / 2, gv / 2);
      At(found.magnitude, x, y) = magnitude;
      found.list.push_back({x, y, direction, ((direction + 16) / 32) % 4});
    }
  }
  return found;
}

struct ReferenceEdgePoint {
  int x = 0;
  int y = 0;
  int direction = 0;
  int sub_x = 0;  // 1/256 pixel; 127 is no shift
  int sub_y = 0;
};

/// Candidates at a peak of the magnitude across the edge, placed at the parabola's vertex.
inline std::vector<ReferenceEdgePoint> ReferenceLocateEdgePoints(
    const ReferenceCandidates& candidates) {
  // By sector: where m1 stands (m2 stands opposite), and which way `off` moves x and y.
  struct Across {
    int dx1, dy1, sign_x, sign_y;
  };
  constexpr Across kAcross[4] = {{-1, 0, 1, 0}, {1, -1, -1, 1}, {0, -1, 0, 1}, {-1, -1, 1, 1}};
  std::vector<ReferenceEdgePoint> points;
  for (const ReferenceCandidate& c : candidates.list) {
    const Across& across = kAcross[c.sector];
    const int m = At(candidates.magnitude, c.x, c.y);
    const int m1 = At(candidates.magnitude, c.x + across.dx1, c.y + across.dy1);
    const int m2 = At(candidates.magnitude, c.x - across.dx1, c.y - across.dy1);
    const int curvature = 2 * (2 * m - m1 - m2);
    if (curvature <= 0) continue;
    const int off = (m2 - m1) * 256 / curvature;
    if (std::abs(off) > 128) continue;
    points.push_back({c.x, c.y, c.direction, std::max(0, 127 + across.sign_x * off),
                      std::max(0, 127 + across.sign_y * off)});
  }
  return points;
}

/// None for an image lower than 5 pixels, which the detector does not look at.
inline std::vector<ReferenceEdgePoint> ReferenceSubCanny(const Grid& image, int threshold) {
  if (Height(image) < 5) return {};
  return ReferenceLocateEdgePoints(ReferenceFindCandidates(image, threshold));
}

/// 255 on every edge point, 0 elsewhere.
inline Grid ReferenceEdgeMap(int width, int height, const std::vector<ReferenceEdgePoint>& points) {
  Grid map = MakeGrid(width, height);
  for (const ReferenceEdgePoint& p : points)
    At(map, p.x, p.y) = 255;
  return map;
}

inline double ReferenceX(const ReferenceEdgePoint& p) {
  return p.x + p.sub_x / 256.0;
}

inline double ReferenceY(const ReferenceEdgePoint& p) {
  return p.y + p.sub_y / 256.0;
}

/// Radians in [-pi, pi): codes of 128 and more count back from a full turn.
inline double ReferenceAngle(const ReferenceEdgePoint& p) {
  return (p.direction < 128 ? p.direction : p.direction - 256) * kTwoPi / 256;
}

}  // namespace orvandel::test
