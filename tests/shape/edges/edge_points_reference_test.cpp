// The fast edge stage gives the reference form's bits, at every level and at widths below, at and
// beyond whole vectors.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shape/edges/edge_detection.h"
#include "tests/reference/shape_edge_points.h"
#include "tests/shape/edges/edge_images.h"
#include "tests/support/image_patterns.h"
#include "tests/support/simd_levels.h"

namespace orvandel::test {
namespace {

using shape::edges::EdgePoint;

class EdgePointsReference : public AtEverySimdLevel {};
ORVANDEL_AT_EVERY_SIMD_LEVEL(EdgePointsReference);

bool IsSame(const EdgePoint& a, const EdgePoint& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

template <typename Pixel>
void ExpectReferencePoints(const ImageViewOf<Pixel>& image, float least_strength,
                           shape::edges::EdgeWorkspace& workspace, const std::string& name) {
  SCOPED_TRACE(name + ", " + std::to_string(image.width) + " x " + std::to_string(image.height) +
               ", strength " + std::to_string(least_strength));
  shape::edges::EdgePoints points;
  DetectEdgePoints(image, least_strength, workspace, points);
  const std::vector<EdgePoint> expected = reference::FindEdgePoints(image, least_strength);
  ASSERT_EQ(points.All().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_TRUE(IsSame(points.All()[i], expected[i]))
        << "point " << i << ": " << points.All()[i].x << ", " << points.All()[i].y << ", "
        << points.All()[i].direction << ", " << points.All()[i].strength << " instead of "
        << expected[i].x << ", " << expected[i].y << ", " << expected[i].direction << ", "
        << expected[i].strength;
  }
}

/// Grey values from 0 to `white` for a pattern's 0 to 255.
template <typename Pixel>
OwnedImage<Pixel> ImageOfPattern(const Grid& grid, int white, int padding) {
  OwnedImage<Pixel> image(Width(grid), Height(grid), padding);
  for (int y = 0; y < Height(grid); ++y) {
    for (int x = 0; x < Width(grid); ++x)
      image.At(x, y) = static_cast<Pixel>(At(grid, x, y) * white / 255);
  }
  return image;
}

TEST_P(EdgePointsReference, EveryWidthAroundWholeVectorsGivesTheSamePoints) {
  UniformRandom random(11);
  shape::edges::EdgeWorkspace workspace;
  for (int width = 1; width <= 140; width += width < 72 ? 1 : 3) {
    const int height = random.Integer(4, 12);
    for (const auto& [name, grid] : ImagePatterns(width, height, random)) {
      const auto image = ImageOfPattern<std::uint8_t>(grid, 255, random.Integer(0, 5));
      for (const float least_strength : {0.0F, 1.3F, 12.0F, 40.0F})
        ExpectReferencePoints(image.View(), least_strength, workspace, name);
      ExpectReferencePoints(image.BottomUpView(), 6.0F, workspace, name + ", bottom-up");
    }
  }
}

TEST_P(EdgePointsReference, SixteenBitImagesGiveTheSamePoints) {
  UniformRandom random(12);
  shape::edges::EdgeWorkspace workspace;
  for (int width = 3; width <= 140; width += width < 72 ? 1 : 3) {
    const int height = random.Integer(4, 12);
    for (const auto& [name, grid] : ImagePatterns(width, height, random)) {
      for (const int white : {65535, 4095, 255}) {
        const auto image = ImageOfPattern<std::uint16_t>(grid, white, random.Integer(0, 5));
        ExpectReferencePoints(image.View(), 12.0F, workspace, name);
        ExpectReferencePoints(image.View(), 0.04F * static_cast<float>(white), workspace, name);
      }
    }
  }
}

TEST_P(EdgePointsReference, LargeImagesGiveTheSamePoints) {
  UniformRandom random(13);
  shape::edges::EdgeWorkspace workspace;
  for (const auto& [name, grid] : ImagePatterns(1003, 60, random)) {
    const auto image = ImageOfPattern<std::uint8_t>(grid, 255, 0);
    ExpectReferencePoints(image.View(), 12.0F, workspace, name);
    const auto deep = ImageOfPattern<std::uint16_t>(grid, 40000, 0);
    ExpectReferencePoints(deep.View(), 1500.0F, workspace, name);
  }
}

TEST_P(EdgePointsReference, EveryThresholdBetweenNoPointAndAllKeepsTheSamePoints) {
  UniformRandom random(14);
  shape::edges::EdgeWorkspace workspace;
  const auto image = ImageOfPattern<std::uint8_t>(Blobs(75, 40, random), 255, 0);
  for (int i = 0; i < 400; ++i)
    ExpectReferencePoints(image.View(), static_cast<float>(i) * 0.37F, workspace, "blobs");
}

}  // namespace
}  // namespace orvandel::test
