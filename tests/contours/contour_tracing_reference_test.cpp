#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "contours/contour_tracing.h"
#include "tests/contours/traced_values.h"
#include "tests/reference/crawl.h"
#include "tests/support/image_patterns.h"

// Following edge pixels against its readable second formulation, bit for bit.
namespace orvandel::test {
namespace {

/// A record with a random sub-pixel point in about half of the pixels.
void FillRandomly(CEdgeImgComplement& edges, UniformRandom& random) {
  for (int y = 0; y < edges.height; ++y) {
    for (int x = 0; x < edges.width; ++x) {
      if (Below(random, 2) == 0) continue;
      edges.Store(x + Below(random, 256) / 256.0, y + Below(random, 256) / 256.0,
                  (Below(random, 256) - 128) * kTwoPi / 256);
    }
  }
}

void ExpectSameContours(const Grid& map, const CEdgeImgComplement* edges, int min_size,
                        int max_size) {
  SCOPED_TRACE(testing::Message() << "sizes " << min_size << " to " << max_size << '\n'
                                  << Drawing(map));
  const ImagePtr image = ImageOf(map);
  const ContourSet owner = TraceContours(RowsOf(*image), edges, min_size, max_size);
  const ContourSetView traced = owner.View();
  Grid followed = map;
  const std::vector<TestContour> expected = ReferenceTrace(followed, edges, min_size, max_size);
  ASSERT_EQ(GridOf(*image), followed);
  ASSERT_EQ(traced.records.size(), expected.size());
  std::size_t at = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(traced.records[i].start, static_cast<int>(at)) << i;
    ASSERT_EQ(traced.records[i].size, static_cast<int>(expected[i].points.size())) << i;
    ASSERT_EQ(traced.records[i].closed, expected[i].closed ? 1 : 0) << i;
    ASSERT_LE(at + expected[i].points.size(), traced.NumPoints());
    for (const TestPoint& p : expected[i].points) {
      ASSERT_EQ(traced.x[at], p.x) << i;
      ASSERT_EQ(traced.y[at], p.y) << i;
      ASSERT_EQ(traced.g[at], p.g) << i;
      ++at;
    }
  }
}

Grid RandomMap(int width, int height, int percent, UniformRandom& random) {
  return Painted(width, height, [&](int, int) {
    // Any value but 0 is an edge pixel.
    return Below(random, 100) < percent ? 1 + Below(random, 255) : 0;
  });
}

TEST(ContourTracingReference, EverySmallSizeAndDensity) {
  constexpr unsigned kSeed = 41;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int height = 1; height <= 12; ++height) {
    for (int width = 1; width <= 12; ++width) {
      for (const int percent : {0, 15, 30, 45, 60, 80, 100}) {
        const Grid map = RandomMap(width, height, percent, random);
        CEdgeImgComplement edges;
        ASSERT_EQ(edges.SetSize(width, height), 0);
        FillRandomly(edges, random);
        ExpectSameContours(map, &edges, 1, 1000000);
        ExpectSameContours(map, &edges, 3, 12);
        ExpectSameContours(map, nullptr, 1, 1000000);
        if (testing::Test::HasFatalFailure()) return;  // one report is enough
      }
    }
  }
}

TEST(ContourTracingReference, LargerMaps) {
  constexpr unsigned kSeed = 42;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int i = 0; i < 60; ++i) {
    const int width = 1 + Below(random, 70);
    const int height = 1 + Below(random, 60);
    const Grid map = RandomMap(width, height, 5 + Below(random, 60), random);
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(width, height), 0);
    FillRandomly(edges, random);
    const int min_size = Below(random, 12);
    ExpectSameContours(map, &edges, min_size, min_size + Below(random, 60));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ContourTracingReference, MapsOfThinCurves) {
  constexpr unsigned kSeed = 43;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int i = 0; i < 60; ++i) {
    Grid map = MakeGrid(40, 30);
    for (int curve = 0; curve < 6; ++curve) {
      Pixel at{Below(random, 40), Below(random, 30)};
      int direction = Below(random, 8);
      for (int length = 0; length < 40; ++length) {
        if (at.column < 0 || at.column >= 40 || at.row < 0 || at.row >= 30) break;
        At(map, at.column, at.row) = 255;
        direction = (direction + 8 + (Below(random, 4) == 0 ? Below(random, 3) - 1 : 0)) % 8;
        at = Neighbour(at, direction);
      }
    }
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(40, 30), 0);
    FillRandomly(edges, random);
    ExpectSameContours(map, &edges, 4, 200);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ContourTracingReference, FullMapsThatOutgrowTheFirstBuffers) {
  for (int height = 1; height <= 6; ++height) {
    for (const int width : {3, 16, 40, 70}) {
      const Grid map = Painted(width, height, [](int, int) { return 255; });
      ExpectSameContours(map, nullptr, 1, 1000000);
    }
  }
}

TEST(ContourTracingReference, IsolatedPixelsThatOutgrowTheFirstRecords) {
  // One pixel in four, none touching another: each is a contour of one point.
  const Grid map = Painted(41, 21, [](int x, int y) { return x % 2 == 1 && y % 2 == 1 ? 255 : 0; });
  ExpectSameContours(map, nullptr, 1, 1);
  const Grid in_rows_1_and_3 =
      Painted(41, 4, [](int x, int y) { return x % 2 == 1 && y % 2 == 1 ? 255 : 0; });
  ExpectSameContours(in_rows_1_and_3, nullptr, 1, 1);
}

TEST(ContourTracingReference, ARecordOfAnotherSizeIsNotRead) {
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(3, 2), 0);
  edges.Store(1.5, 1.5, 1.0);
  const Grid map = Drawn({".....", ".###.", "....."});
  const ImagePtr image = ImageOf(map);
  const ContourSet owner = TraceContours(RowsOf(*image), &edges, 1, 10);
  const ContourSetView traced = owner.View();
  EXPECT_EQ(ValuesOf(traced.x), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(ValuesOf(traced.y), (std::vector<double>{1, 1, 1}));
  EXPECT_EQ(ValuesOf(traced.g), (std::vector<double>{0, 0, 0}));
}

}  // namespace
}  // namespace orvandel::test
