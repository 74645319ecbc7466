// The search object: defaults, parameters, initialisation and clean-up.

#include <type_traits>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/kept_objects.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

const CCrawler& FieldsOf(void* handle) {
  return *static_cast<CCrawler*>(handle);
}

TEST(SearchObject, FreshOneHoldsNothing) {
  QRSIS search;
  EXPECT_EQ(search.GetPatternDx(), 0);
  EXPECT_EQ(search.GetPatternDy(), 0);
  EXPECT_EQ(search.GetCrawlerPatternData(), nullptr);
  EXPECT_EQ(search.GetCrawlerSceneData(), nullptr);
  double x = 1;
  double y = 1;
  search.GetPatternRef(&x, &y);
  EXPECT_TRUE(SameBits(x, 0.0));
  EXPECT_TRUE(SameBits(y, 0.0));
}

TEST(SearchObject, FreshOneHasFoundNothing) {
  QRSIS search;
  const Found found = ResultOf(search, 0);  // the score is not set yet
  EXPECT_TRUE(SameBits(found.x, 0.0));
  EXPECT_TRUE(SameBits(found.y, 0.0));
  EXPECT_TRUE(SameBits(found.angle, 0.0));
  EXPECT_TRUE(SameBits(found.scale, 0.0));
}

TEST(SearchObject, IsPolymorphicByItsDestructorAlone) {
  EXPECT_TRUE(std::has_virtual_destructor_v<QRSIS>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CLineHypGen>);
}

TEST(SearchObject, InitializeMakesTwoEmptySets) {
  QRSIS search;
  search.Initialize();
  void* pattern = search.GetCrawlerPatternData();
  void* scene = search.GetCrawlerSceneData();
  ASSERT_NE(pattern, nullptr);
  ASSERT_NE(scene, nullptr);
  EXPECT_NE(pattern, scene);
  EXPECT_EQ(ctd_contour_count(pattern), 0);
  EXPECT_EQ(ctd_contour_count(scene), 0);
}

TEST(SearchObject, SecondInitializeAbandonsTheFirstPair) {
  QRSIS search;
  search.Initialize();
  const ContourHandle pattern(
      search.GetCrawlerPatternData());  // the test's to release from here on
  const ContourHandle scene(search.GetCrawlerSceneData());
  search.Initialize();
  EXPECT_NE(search.GetCrawlerPatternData(), pattern.get());
  EXPECT_NE(search.GetCrawlerSceneData(), scene.get());
  EXPECT_EQ(ctd_contour_count(pattern.get()), 0);
}

TEST(SearchObject, DefaultsReachTheCrawl) {
  TrainedSearch search(ImageOf(SmallPart()));
  const CCrawler& set = FieldsOf(search.GetCrawlerPatternData());
  EXPECT_EQ(set.edge_threshold, 16);
  EXPECT_EQ(set.min_size, 10);
  EXPECT_EQ(set.max_size, 100000);
}

TEST(SearchObject, SetParamsReachesTheCrawlUnchecked) {
  QRSIS search;
  search.Initialize();
  search.SetParams(-7, -30, -40, 80);
  EXPECT_EQ(TrainOn(search, ImageOf(SmallPart())), 1);  // no contour has at most -40 points
  const CCrawler& set = FieldsOf(search.GetCrawlerPatternData());
  EXPECT_EQ(set.edge_threshold, -7);
  EXPECT_EQ(set.min_size, -30);
  EXPECT_EQ(set.max_size, -40);
}

TEST(SearchObject, ParametersTakeEffectAtTheNextSearch) {
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  search.SetParams(25, 12, 5000, 80);
  LookFor(search, image);
  const CCrawler& scene = FieldsOf(search.GetCrawlerSceneData());
  EXPECT_EQ(scene.edge_threshold, 25);
  EXPECT_EQ(scene.min_size, 12);
  EXPECT_EQ(scene.max_size, 5000);
  EXPECT_EQ(FieldsOf(search.GetCrawlerPatternData()).edge_threshold, 16);
}

TEST(SearchObject, TimeOutIsKeptBetweenZeroAndJustUnderFourSeconds) {
  QRSIS search;
  EXPECT_TRUE(search.SetTimeOutValue(0));
  EXPECT_TRUE(search.SetTimeOutValue(1));
  EXPECT_TRUE(search.SetTimeOutValue(3999000));
  EXPECT_FALSE(search.SetTimeOutValue(3999001));
  EXPECT_FALSE(search.SetTimeOutValue(2147483647));
  EXPECT_FALSE(search.SetTimeOutValue(-1));
  EXPECT_FALSE(search.SetTimeOutValue(-5));
  EXPECT_FALSE(search.SetTimeOutValue(-2147483647 - 1));
}

TEST(SearchObject, CleanUpReleasesTheSetsAndNullsTheirHandles) {
  QRSIS search;  // untrained, so destruction after the clean-up has nothing left to release
  search.Initialize();
  search.CleanUp();
  EXPECT_EQ(search.GetCrawlerPatternData(), nullptr);
  EXPECT_EQ(search.GetCrawlerSceneData(), nullptr);
  search.CleanUp();
  EXPECT_EQ(search.GetCrawlerPatternData(), nullptr);
}

TEST(SearchObject, CleanUpOfAFreshOneDoesNothing) {
  QRSIS search;
  search.CleanUp();
  EXPECT_EQ(search.GetCrawlerPatternData(), nullptr);
}

TEST(SearchObject, CleanUpReleasesTheImageAndLeavesItsPointer) {
  // A host that cleans up a trained object must not destroy it any more. The leak check sees that
  // the image is gone; the object still takes itself for trained, as its search tells.
  auto& search = MakeAndKeep<TrainedSearch>(ImageOf(SmallPart()));
  LookFor(search, ImageOf(SmallPart()));
  search.CleanUp();
  EXPECT_EQ(search.GetCrawlerPatternData(), nullptr);
  EXPECT_EQ(search.GetCrawlerSceneData(), nullptr);
  EXPECT_EQ(search.GetPatternDx(), 100);
  EXPECT_EQ(search.GetPatternDy(), 80);
  ExpectZeroResult(LookFor(search, ImageOf(SmallPart())), 3);
}

TEST(SearchObject, DestructionReleasesAllThatItOwns) {
  // For the leak check: trained twice, searched, with sets and images of several sizes.
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_EQ(TrainOn(search, ImageOf(Triangle())), 0);
  LookFor(search, SceneOf(Triangle(), {.x = 90, .y = 75}));
  EXPECT_EQ(TrainOn(search, ImageOf(SmallPart())), 0);
}

}  // namespace
}  // namespace orvandel::test
