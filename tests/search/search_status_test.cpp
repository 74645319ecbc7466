// What a search returns, and what it leaves in its result.

#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

ImagePtr OfAnotherType() {
  return ImagePtr(im_create(2, 180, 150));
}

TEST(SearchStatus, UntrainedReturns1) {
  QRSIS fresh;
  EXPECT_EQ(fresh.LookForIt(ImageOf(SmallPart()).get()), 1);
  QRSIS initialised;
  initialised.Initialize();
  EXPECT_EQ(initialised.LookForIt(ImageOf(SmallPart()).get()), 1);
}

TEST(SearchStatus, UntrainedLeavesTheResultAndTheImageAsTheyAre) {
  TrainedSearch search(ImageOf(SmallPart()));
  const Found before = LookFor(search, SceneOf(SmallPart(), kRotated));
  ASSERT_GT(before.score, 0);
  ASSERT_EQ(TrainOn(search, UniformImage()), 1);
  const ImagePtr scene = MakeImage(40, 40, [](int x, int y) { return (x * y) % 256; });
  EXPECT_EQ(search.LookForIt(scene.get()), 1);
  ExpectSameResult(ResultOf(search, 0), before);
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x)
      ASSERT_EQ(scene->row[y][x], (x * y) % 256);
  }
}

TEST(SearchStatus, SceneWithoutContourReturns2AndAZeroResult) {
  TrainedSearch search(ImageOf(SmallPart()));
  LookFor(search, SceneOf(SmallPart(), kRotated));
  ExpectZeroResult(LookFor(search, UniformImage()), 2);
}

TEST(SearchStatus, SceneWithoutLineSegmentReturns4AndAZeroResult) {
  TrainedSearch search(ImageOf(SmallPart()));
  LookFor(search, SceneOf(SmallPart(), kRotated));
  ExpectZeroResult(LookFor(search, ImageOf(CurvedPart())), 4);
  EXPECT_GT(ctd_contour_count(search.GetCrawlerSceneData()), 0);
}

TEST(SearchStatus, FoundReturns0AndAPose) {
  TrainedSearch search(ImageOf(SmallPart()));
  const Found found = LookFor(search, SceneOf(SmallPart(), kRotated));
  EXPECT_EQ(found.status, 0);
  EXPECT_GE(found.score, 80);
  EXPECT_LE(found.score, 100);
}

TEST(SearchStatus, SceneOfAnotherTypeReturns2AtFirst) {
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_EQ(search.LookForIt(OfAnotherType().get()), 2);
  ExpectZeroResult(ResultOf(search, 2), 2);
}

TEST(SearchStatus, NoSceneReturns2AtFirst) {
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_EQ(search.LookForIt(nullptr), 2);
  ExpectZeroResult(ResultOf(search, 2), 2);
}

/// The result of a search that is given a scene and then an image that the crawl refuses.
Found ReferenceResultOfStaleScene(const ImagePtr& pattern, const ImagePtr& scene) {
  ReferencePattern reference;
  EXPECT_EQ(ReferenceTrain(reference, CopyOf(pattern).get(), {}), 0);
  ReferenceSearch search(reference, {});
  const ReferenceClock never = [] { return false; };
  search.LookForIt(CopyOf(scene).get(), never);
  return search.LookForIt(OfAnotherType().get(), never);
}

TEST(SearchStatus, SceneOfAnotherTypeSearchesTheOneBeforeAgain) {
  // Its contours are smoothed and resampled once more.
  const ImagePtr pattern = ImageOf(SmallPart());
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const Found expected = ReferenceResultOfStaleScene(pattern, scene);
  for (const ImagePtr& refused : {OfAnotherType(), ImagePtr()}) {
    TrainedSearch search(pattern);
    const Found first = LookFor(search, scene);
    const int status = search.LookForIt(refused.get());
    const Found again = ResultOf(search, status);
    ExpectSameResult(again, expected);
    EXPECT_NEAR(again.x, first.x, 2);  // still the same place
    EXPECT_NEAR(again.y, first.y, 2);
  }
}

/// Makes a set count two contours and hold none, as a file with a negative number of points does.
void LoadCountsAlone(void* contours) {
  const ScratchFolder folder;
  std::string path = folder.File("counts.ctd");
  const std::array<std::int32_t, 3> header = {2, -5, 16};
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(header.data()), sizeof(header));
  ASSERT_EQ(ctd_load(contours, path.data()), 4);
  ASSERT_EQ(ctd_contour_count(contours), 2);
}

TEST(SearchStatus, SceneThatCountsContoursAndHoldsNoneReturns4) {
  TrainedSearch search(ImageOf(SmallPart()));
  LoadCountsAlone(search.GetCrawlerSceneData());
  EXPECT_EQ(search.LookForIt(nullptr), 4);
  ExpectZeroResult(ResultOf(search, 4), 4);
}

TEST(SearchStatus, SceneThatCountsContoursAndHoldsNoneReturns0WhenTheTimeIsUp) {
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetTimeOutValue(0);
  LoadCountsAlone(search.GetCrawlerSceneData());
  const int status = search.LookForIt(nullptr);
  ExpectZeroResult(ResultOf(search, status), 0);
}

TEST(SearchStatus, TrainingOnAPatternThatCountsContoursAndHoldsNoneReturns4) {
  TrainedSearch search(ImageOf(SmallPart()));
  LoadCountsAlone(search.GetCrawlerPatternData());
  EXPECT_EQ(search.TrainIt(OfAnotherType().get()), 4);
  double x = 0;
  double y = 0;
  search.GetPatternRef(&x, &y);
  EXPECT_TRUE(std::isnan(x) && std::isnan(y)) << x << ' ' << y;  // the mean of no points
}

TEST(SearchStatus, ThresholdOfMinusOneIsPassedOnAsItIs) {
  // No estimate is made for a scene: -1 keeps every pixel as a candidate.
  const ScriptedCounter no_hurry(FrozenTime());
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetParams(-1, 10, 100000, 80);
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const Found found = LookFor(search, scene);
  EXPECT_EQ(static_cast<CCrawler*>(search.GetCrawlerSceneData())->edge_threshold, -1);

  ReferenceParameters parameters;
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(ImageOf(SmallPart())).get(), parameters), 0);
  parameters.edge_threshold = -1;
  ReferenceSearch reference_search(reference, parameters);
  ExpectSameResult(found, reference_search.LookForIt(CopyOf(scene).get(), [] { return false; }));
}

TEST(SearchStatus, SearchOverwritesItsImageAndLeavesThePattern) {
  const ImagePtr pattern = ImageOf(SmallPart());
  TrainedSearch search(pattern);
  const int num_points = ctd_point_count(search.GetCrawlerPatternData());
  double ref_x = 0;
  double ref_y = 0;
  search.GetPatternRef(&ref_x, &ref_y);
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  search.LookForIt(scene.get());
  for (int y = 0; y < scene->height; ++y) {
    for (int x = 0; x < scene->width; ++x)
      ASSERT_EQ(scene->row[y][x], 0) << "every edge pixel belongs to a chain that was followed";
  }
  EXPECT_EQ(ctd_point_count(search.GetCrawlerPatternData()), num_points);
  double x = 0;
  double y = 0;
  search.GetPatternRef(&x, &y);
  EXPECT_TRUE(SameBits(x, ref_x));
  EXPECT_TRUE(SameBits(y, ref_y));
}

}  // namespace
}  // namespace orvandel::test
