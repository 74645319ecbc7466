// The edge threshold of a training: given, or estimated from its image.

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

constexpr int kAutomatic = -1;

int PatternThreshold(QRSIS& search) {
  return static_cast<CCrawler*>(search.GetCrawlerPatternData())->edge_threshold;
}

int EstimateOf(const ImagePtr& image) {
  const ImagePtr copy = CopyOf(image);
  return ctd_compute_edge_strength(nullptr, copy.get());
}

/// An image with an estimate of its own: blurred edges of every strength, over faint noise that
/// makes weak gradients the most frequent ones. Images with sharp edges only get the estimator's
/// stopgap of 10, as a flat one does.
ImagePtr ImageWithEstimate() {
  ImagePtr image = render::RenderPattern(SmallPart(), {.blur_sigma_px = 1.5, .noise_sigma = 0.6});
  EXPECT_NE(EstimateOf(image), EstimateOf(UniformImage()));
  return image;
}

TEST(EdgeThreshold, IsEstimatedOnceForMinusOne) {
  const ImagePtr image = ImageWithEstimate();
  const int estimate = EstimateOf(image);
  QRSIS search;
  search.Initialize();
  search.SetParams(kAutomatic, 10, 100000, 80);
  ASSERT_EQ(TrainOn(search, image), 0);
  EXPECT_EQ(PatternThreshold(search), estimate);
  // The search and the next training use the same number.
  LookFor(search, image);
  EXPECT_EQ(static_cast<CCrawler*>(search.GetCrawlerSceneData())->edge_threshold, estimate);
  TrainOn(search, UniformImage());
  EXPECT_EQ(PatternThreshold(search), estimate);
}

TEST(EdgeThreshold, KeepsTheEstimateOfAFailedTraining) {
  const ImagePtr image = ImageWithEstimate();
  QRSIS search;
  search.Initialize();
  search.SetParams(kAutomatic, 10, 100000, 80);
  EXPECT_EQ(TrainOn(search, UniformImage()), 1);  // of which the estimate is 10
  EXPECT_EQ(PatternThreshold(search), 10);
  EXPECT_EQ(TrainOn(search, image), 0);
  EXPECT_EQ(PatternThreshold(search), 10);

  const ImagePtr curved = ImageOf(CurvedPart());
  search.SetParams(kAutomatic, 10, 100000, 80);
  EXPECT_EQ(TrainOn(search, curved), 4);
  EXPECT_EQ(PatternThreshold(search), EstimateOf(curved));
}

TEST(EdgeThreshold, IsEstimatedForNoOtherNegativeNumber) {
  QRSIS search;
  search.Initialize();
  search.SetParams(-2, 10, 100000, 80);
  TrainOn(search, ImageOf(SmallPart()));
  EXPECT_EQ(PatternThreshold(search), -2);
}

TEST(EdgeThreshold, IsNotEstimatedWithoutContourSets) {
  // Without them training ends before the estimate, and the next one still makes it.
  QRSIS search;
  search.SetParams(kAutomatic, 10, 100000, 80);
  EXPECT_EQ(TrainOn(search, UniformImage()), 3);
  search.Initialize();
  const ImagePtr image = ImageWithEstimate();
  TrainOn(search, image);
  EXPECT_EQ(PatternThreshold(search), EstimateOf(image));
}

TEST(EdgeThreshold, IsEstimatedAs13ForAnImageOfAnotherType) {
  QRSIS search;
  search.Initialize();
  search.SetParams(kAutomatic, 10, 100000, 80);
  EXPECT_EQ(search.TrainIt(ImagePtr(im_create(2, 31, 32)).get()), 1);
  TrainOn(search, ImageOf(SmallPart()));
  EXPECT_EQ(PatternThreshold(search), 13);
}

}  // namespace
}  // namespace orvandel::test
