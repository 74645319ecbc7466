#include "shape/search/response_maps.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

/// Votes by the angle between an edge and a bin, degrees; the bounds lie between the codes.
int VoteByAngle(double degrees) {
  const double off = std::abs(std::remainder(degrees, 360.0));
  return off < 19.0 ? 4 : off < 30.0 ? 3 : off < 42.0 ? 2 : off < 53.0 ? 1 : 0;
}

int VoteFor(int code, int bin, EdgeSign sign) {
  const double apart = code * (360.0 / kDirectionCodes) - bin * (360.0 / kDirectionBins);
  const int same = VoteByAngle(apart);
  const int reversed = VoteByAngle(apart + 180.0);
  return sign == EdgeSign::kSame       ? same
         : sign == EdgeSign::kReversed ? reversed
                                       : std::max(same, reversed);
}

TEST(ResponseMaps, HoldTheBestVoteOfTheEdgesAround) {
  test::UniformRandom random(3);
  for (const EdgeSign sign : {EdgeSign::kSame, EdgeSign::kReversed, EdgeSign::kEither}) {
    for (const bool is_pooled : {true, false}) {
      const int width = 21;
      const int height = 13;
      const int unit = is_pooled ? 2 : 1;
      std::vector<SceneEdge> edges;
      for (int i = 0; i < 60; ++i)
        edges.push_back({static_cast<std::uint16_t>(random.Integer(0, unit * width - 1)),
                         static_cast<std::uint16_t>(random.Integer(0, unit * height - 1)),
                         static_cast<std::uint16_t>(random.Integer(0, kDirectionCodes - 1))});
      std::sort(edges.begin(), edges.end(),
                [](const SceneEdge& a, const SceneEdge& b) { return a.y < b.y; });
      ResponseMaps maps;
      maps.Build(edges, is_pooled, width, height, 5, sign);
      for (int bin = 0; bin < kDirectionBins; ++bin) {
        for (int y = 0; y < height; ++y) {
          for (int x = 0; x < width; ++x) {
            int expected = 0;
            for (const SceneEdge& edge : edges) {
              // Steps from the cell's pixels to the edge, none where it lies in the cell.
              const int across = std::max({unit * x - edge.x, edge.x - (unit * x + unit - 1), 0});
              const int down = std::max({unit * y - edge.y, edge.y - (unit * y + unit - 1), 0});
              if (across <= 1 && down <= 1)
                expected = std::max(expected, VoteFor(edge.code, bin, sign) - across - down);
            }
            EXPECT_EQ(maps.Origin()[bin * maps.PlaneSize() + y * maps.Stride() + x], expected);
          }
        }
      }
    }
  }
}

TEST(ResponseMaps, HoldTheOutsideVoteAroundTheGridAndNothingInTheLastMap) {
  const std::vector<SceneEdge> edges = {{0, 0, 0}, {19, 11, 5}};
  constexpr int kFrame = 4;
  ResponseMaps maps;
  maps.Build(edges, true, 10, 6, kFrame, EdgeSign::kSame);
  for (const int vote : {0, 2, 1}) {
    maps.SetOutsideVote(static_cast<std::uint8_t>(vote));
    for (int bin = 0; bin <= kDirectionBins; ++bin) {
      for (int y = -kFrame; y < 6 + kFrame; ++y) {
        for (int x = -kFrame; x < 10 + kFrame; ++x) {
          if (bin < kDirectionBins && x >= 0 && x < 10 && y >= 0 && y < 6) continue;
          EXPECT_EQ(maps.Origin()[bin * maps.PlaneSize() + y * maps.Stride() + x],
                    bin < kDirectionBins ? vote : 0);
        }
      }
    }
  }
}

TEST(ResponseMaps, BuiltAgainHoldTheSameWithinTheGrid) {
  const std::vector<SceneEdge> edges = {{3, 1, 0}, {12, 7, 40}, {19, 11, 5}};
  ResponseMaps fresh;
  fresh.Build(edges, true, 40, 9, 6, EdgeSign::kSame);
  ResponseMaps used;
  used.Build(std::vector<SceneEdge>{{7, 3, 20}, {79, 17, 33}}, true, 40, 9, 6, EdgeSign::kEither);
  used.SetOutsideVote(2);
  used.Build(edges, true, 40, 9, 6, EdgeSign::kSame);
  for (int bin = 0; bin < kDirectionBins; ++bin) {
    for (int y = 0; y < 9; ++y) {
      for (int x = 0; x < 40; ++x) {
        EXPECT_EQ(used.Origin()[bin * used.PlaneSize() + y * used.Stride() + x],
                  fresh.Origin()[bin * fresh.PlaneSize() + y * fresh.Stride() + x]);
      }
    }
  }
}

TEST(SceneEdges, OfASlantedStepLieAlongItWithItsDirection) {
  constexpr int kSize = 64;
  for (int degrees = 0; degrees < 360; degrees += 7) {
    const double nx = std::cos(degrees * kPi / 180.0);
    const double ny = std::sin(degrees * kPi / 180.0);
    GreyPlane plane;
    plane.width = plane.height = kSize;
    for (int y = 0; y < kSize; ++y) {
      for (int x = 0; x < kSize; ++x) {
        const double d = nx * (x - 31.7) + ny * (y - 31.4);
        plane.pixels.push_back(
            static_cast<std::uint16_t>(1000.0 + 2000.0 * std::clamp(d + 0.5, 0.0, 1.0)));
      }
    }
    GradientPlane gradients;
    ComputeGradients(plane, gradients);
    std::vector<SceneEdge> edges;
    SceneEdgeBuffers buffers;
    FindSceneEdges(gradients, 500.0F, buffers, edges);
    EXPECT_GT(edges.size(), 50U) << degrees;
    for (const SceneEdge& edge : edges) {
      if (edge.x < 2 || edge.y < 2 || edge.x > kSize - 3 || edge.y > kSize - 3) continue;
      EXPECT_LT(std::abs(nx * (edge.x - 31.7) + ny * (edge.y - 31.4)), 1.1) << degrees;
      const double off = std::remainder(edge.code * 360.0 / kDirectionCodes - degrees, 360.0);
      // Half a code, and the few degrees that a Sobel mask errs on sharp steps.
      EXPECT_LT(std::abs(off), 2.9 + 6.0) << degrees;
    }
  }
}

}  // namespace
}  // namespace orvandel::shape
