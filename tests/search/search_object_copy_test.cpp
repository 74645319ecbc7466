// Copies of a search object share its image and contour sets, so only one of such a pair may be
// destroyed. Here the other one is kept for good.

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/kept_objects.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

TEST(SearchObjectCopy, SharesTheContourSets) {
  QRSIS source;
  source.Initialize();
  const QRSIS& original = source;
  auto& copy = MakeAndKeep<QRSIS>(original);
  EXPECT_EQ(copy.GetCrawlerPatternData(), source.GetCrawlerPatternData());
  EXPECT_EQ(copy.GetCrawlerSceneData(), source.GetCrawlerSceneData());
}

TEST(SearchObjectCopy, OfAFreshOneSharesNothing) {
  const QRSIS source;
  QRSIS copy(source);
  EXPECT_EQ(copy.GetCrawlerPatternData(), nullptr);
  QRSIS assigned;
  assigned = source;
  EXPECT_EQ(assigned.GetCrawlerSceneData(), nullptr);
  copy.Initialize();
  EXPECT_EQ(TrainOn(copy, ImageOf(SmallPart())), 0);
}

TEST(SearchObjectCopy, TakesPatternAndLastResult) {
  TrainedSearch source(ImageOf(SmallPart()));
  const Found found = LookFor(source, SceneOf(SmallPart(), kRotated));
  const QRSIS& original = source;
  auto& copy = MakeAndKeep<QRSIS>(original);
  ExpectSameResult(ResultOf(copy, 0), found);
  EXPECT_EQ(copy.GetPatternDx(), 100);
  EXPECT_EQ(copy.GetPatternDy(), 80);
  double x = 0;
  double y = 0;
  double source_x = 0;
  double source_y = 0;
  copy.GetPatternRef(&x, &y);
  source.GetPatternRef(&source_x, &source_y);
  EXPECT_TRUE(SameBits(x, source_x));
  EXPECT_TRUE(SameBits(y, source_y));
}

TEST(SearchObjectCopy, SearchesAsItsSource) {
  TrainedSearch source(ImageOf(SmallPart()));
  source.SetParams(20, 12, 4000, 90);
  source.SetMinMaxScale(0.8, 1.2);
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const Found found = LookFor(source, scene);
  EXPECT_GT(found.score, 80);
  const QRSIS& original = source;
  auto& copy = MakeAndKeep<QRSIS>(original);
  ExpectSameResult(LookFor(copy, scene), found);
  auto& assigned = MakeAndKeep<QRSIS>();
  EXPECT_EQ(&(assigned = original), &assigned);
  ExpectSameResult(LookFor(assigned, scene), found);
}

TEST(SearchObjectCopy, MayBeTheOneThatIsDestroyed) {
  auto& source = MakeAndKeep<TrainedSearch>(ImageOf(SmallPart()));
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const Found found = LookFor(source, scene);
  const QRSIS& original = source;
  QRSIS copy(original);
  ExpectSameResult(LookFor(copy, scene), found);
}

TEST(SearchObjectCopy, AssignmentReleasesNothingOfItsTarget) {
  QRSIS target;
  target.Initialize();
  const ContourHandle pattern(target.GetCrawlerPatternData());  // dropped, so the test's to release
  const ContourHandle scene(target.GetCrawlerSceneData());
  auto& source = MakeAndKeep<TrainedSearch>(ImageOf(SmallPart()));
  const QRSIS& original = source;
  target = original;
  EXPECT_EQ(target.GetCrawlerPatternData(), source.GetCrawlerPatternData());
  EXPECT_EQ(ctd_contour_count(pattern.get()), 0);
  EXPECT_EQ(ctd_contour_count(scene.get()), 0);
}

TEST(SearchObjectCopy, AssignmentToItselfChangesNothing) {
  TrainedSearch search(ImageOf(SmallPart()));
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const Found found = LookFor(search, scene);
  void* handle = search.GetCrawlerPatternData();
  const QRSIS& same = search;
  search.QRSIS::operator=(same);
  EXPECT_EQ(search.GetCrawlerPatternData(), handle);
  ExpectSameResult(ResultOf(search, 0), found);
  ExpectSameResult(LookFor(search, scene), found);
}

TEST(SearchObjectCopy, HasParametersOfItsOwn) {
  TrainedSearch source(ImageOf(SmallPart()));
  const QRSIS& original = source;
  auto& copy = MakeAndKeep<QRSIS>(original);
  copy.SetParams(33, 10, 100000, 80);
  LookFor(source, SceneOf(SmallPart(), kRotated));
  EXPECT_EQ(static_cast<CCrawler*>(source.GetCrawlerSceneData())->edge_threshold, 16);
  LookFor(copy, SceneOf(SmallPart(), kRotated));
  EXPECT_EQ(static_cast<CCrawler*>(source.GetCrawlerSceneData())->edge_threshold, 33);
}

}  // namespace
}  // namespace orvandel::test
