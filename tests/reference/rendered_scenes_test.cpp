// The library against the reference stages, bit for bit, on images as large as hosts have them.

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/cluttered_scenes.h"
#include "tests/reference/chain_comparison.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

constexpr int kThresholds[] = {0, 16, 32, 300};

void ExpectSameStagesAtAllThresholds(const ImagePtr& image) {
  for (const int threshold : kThresholds)
    ExpectSameStages(image, threshold);
}

TEST(RenderedScenes, StagesAgreeOnRenderedScenesOfAllSizes) {
  constexpr render::Size kSizes[] = {{5, 5},     {31, 33},   {64, 48},   {97, 61},
                                     {160, 120}, {333, 257}, {640, 480}, {1280, 1024}};
  for (const render::Size size : kSizes) {
    for (const std::uint32_t seed : {1U, 2U}) {
      SCOPED_TRACE(testing::Message() << size.width << " x " << size.height << ", seed " << seed);
      const double noise_sigma = 4 * (seed - 1);
      ExpectSameStagesAtAllThresholds(
          evaluation::Render({size, evaluation::PartsForSize(size), noise_sigma, seed}));
    }
  }
}

/// Images that are no scenes: nothing but edges, or none.
std::vector<NamedGrid> StrangeImages(render::Size size, UniformRandom& random) {
  const auto painted = [size](const auto& value) {
    return Painted(size.width, size.height, value);
  };
  return {
      {"noise", painted([&](int, int) { return Below(random, 256); })},
      {"faint noise", painted([&](int, int) { return 100 + Below(random, 24); })},
      {"checkerboard", painted([](int x, int y) { return 255 * ((x + y) % 2); })},
      {"coarse checkerboard", painted([](int x, int y) { return 255 * ((x / 24 + y / 24) % 2); })},
      {"ramp", painted([](int x, int y) { return (7 * x + 3 * y) % 256; })},
      {"flat", painted([](int, int) { return 90; })},
  };
}

TEST(RenderedScenes, StagesAgreeOnStrangeImages) {
  constexpr unsigned kSeed = 6;
  UniformRandom random(kSeed);
  for (const NamedGrid& image : StrangeImages({640, 480}, random)) {
    SCOPED_TRACE(testing::Message() << image << ", seed " << kSeed);
    ExpectSameStagesAtAllThresholds(ImageOf(image.grid));
  }
}

TEST(RenderedScenes, SearchesAgreeOnRenderedScenes) {
  constexpr render::Size kSizes[] = {{320, 240}, {640, 480}, {800, 600}};
  const ImagePtr pattern = evaluation::BracketPattern();
  int num_found = 0;
  for (const render::Size size : kSizes) {
    for (std::uint32_t seed = 1; seed <= 6; ++seed) {
      SCOPED_TRACE(testing::Message() << size.width << " x " << size.height << ", seed " << seed);
      const ImagePtr scene = evaluation::Render(
          {size, evaluation::PartsForSize(size), static_cast<double>(seed), seed});
      ReferenceParameters parameters;
      parameters.edge_threshold = seed % 2 == 0 ? 16 : 32;
      num_found += ExpectSameSearch(pattern, scene, parameters).score >= 60 ? 1 : 0;
    }
  }
  EXPECT_GT(num_found, 6);  // of 18: the poses that agree are those of a pattern that is there
}

TEST(RenderedScenes, SearchesAgreeAtAllThresholds) {
  const ImagePtr scene = evaluation::Render({{320, 240}, 3, 3, 21});
  for (const int threshold : kThresholds) {
    SCOPED_TRACE(testing::Message() << "threshold " << threshold);
    ReferenceParameters parameters;
    parameters.edge_threshold = threshold;
    ExpectSameSearch(evaluation::BracketPattern(), scene, parameters);
  }
}

TEST(RenderedScenes, SearchesAgreeWithoutAnAcceptedPose) {
  // An accept score out of reach keeps the search going to its end.
  ReferenceParameters parameters;
  parameters.accept_score = 101;
  parameters.min_scale = 0.5;
  parameters.max_scale = 2;
  for (const std::uint32_t seed : {11U, 12U, 13U}) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    ExpectSameSearch(evaluation::BracketPattern(), evaluation::Render({{640, 480}, 12, 3, seed}),
                     parameters);
  }
}

TEST(RenderedScenes, SearchesAgreeWhereThereIsNothing) {
  constexpr unsigned kSeed = 7;
  UniformRandom random(kSeed);
  const ImagePtr pattern = evaluation::BracketPattern();
  for (const NamedGrid& image : StrangeImages({320, 240}, random)) {
    for (const int threshold : kThresholds) {
      SCOPED_TRACE(testing::Message() << image << ", threshold " << threshold);
      ReferenceParameters parameters;
      parameters.edge_threshold = threshold;
      ExpectSameSearch(pattern, ImageOf(image.grid), parameters);
    }
  }
}

}  // namespace
}  // namespace orvandel::test
