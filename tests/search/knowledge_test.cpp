// What training learnt, saved and loaded again.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/kept_objects.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

bool Save(QRSIS& search, const std::string& path) {
  return search.SaveKnowledge(path.c_str());
}

bool Load(QRSIS& search, const std::string& path) {
  return search.LoadKnowledge(path.c_str());
}

/// An initialised object that knows nothing.
struct UntrainedSearch : QRSIS {
  UntrainedSearch() { Initialize(); }
};

void ExpectSamePoints(void* actual, void* expected) {
  ASSERT_EQ(ctd_contour_count(actual), ctd_contour_count(expected));
  ASSERT_EQ(ctd_point_count(actual), ctd_point_count(expected));
  const CCrawler& a = *static_cast<CCrawler*>(actual);
  const CCrawler& e = *static_cast<CCrawler*>(expected);
  for (int i = 0; i < ctd_point_count(expected); ++i) {
    EXPECT_TRUE(SameBits(a.x[i], e.x[i]));
    EXPECT_TRUE(SameBits(a.y[i], e.y[i]));
    EXPECT_TRUE(SameBits(a.g[i], e.g[i]));
    EXPECT_EQ(a.f[i], e.f[i]);  // which points the line extraction found straight
  }
}

void ExpectSamePattern(QRSIS& actual, QRSIS& expected) {
  EXPECT_EQ(actual.GetPatternDx(), expected.GetPatternDx());
  EXPECT_EQ(actual.GetPatternDy(), expected.GetPatternDy());
  double x = 0;
  double y = 0;
  double expected_x = 0;
  double expected_y = 0;
  actual.GetPatternRef(&x, &y);
  expected.GetPatternRef(&expected_x, &expected_y);
  EXPECT_TRUE(SameBits(x, expected_x));
  EXPECT_TRUE(SameBits(y, expected_y));
  ExpectSamePoints(actual.GetCrawlerPatternData(), expected.GetCrawlerPatternData());
  // A search depends on every segment and verification point that it tries.
  for (const double degrees : {0.0, 40.0, 170.0, 285.0}) {
    const ImagePtr scene = SceneOf(SmallPart(), {.x = 90, .y = 75, .angle_deg = degrees});
    ExpectSameResult(LookFor(actual, scene), LookFor(expected, scene));
  }
}

TEST(Knowledge, LoadedPatternIsTheSavedOne) {
  const ScratchFolder folder;
  TrainedSearch saved(ImageOf(SmallPart()));
  EXPECT_TRUE(Save(saved, folder.File("p")));
  UntrainedSearch loaded;
  EXPECT_TRUE(Load(loaded, folder.File("p")));
  ExpectSamePattern(loaded, saved);
}

TEST(Knowledge, FileHoldsTheVeryImageOfTheTraining) {
  const ScratchFolder folder;
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  ASSERT_TRUE(Save(search, folder.File("p")));
  const std::string path = folder.File("p_qrsi.bmp");
  int width = 0;
  int height = 0;
  int channels = 0;
  int bits = 0;
  ASSERT_EQ(im_file_get_size(path.c_str(), 1, &width, &height, &channels, &bits), 0);
  ASSERT_EQ(width, 100);
  ASSERT_EQ(height, 80);
  const ImagePtr read(im_create(1, width, height));
  ASSERT_EQ(im_file_read(read.get(), path.c_str(), 1), 0);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      ASSERT_EQ(read->row[y][x], image->row[y][x]) << x << ' ' << y;
  }
}

TEST(Knowledge, NameIsThePathAndTheSuffixWhateverItEndsIn) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  ASSERT_TRUE(Save(search, folder.File("part.bmp")));
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"part.bmp_qrsi.bmp"}));
  UntrainedSearch loaded;
  EXPECT_FALSE(Load(loaded, folder.File("part.bmp_qrsi.bmp")));
  EXPECT_FALSE(Load(loaded, folder.File("part")));
  EXPECT_TRUE(Load(loaded, folder.File("part.bmp")));
}

TEST(Knowledge, UntrainedObjectSavesNothing) {
  const ScratchFolder folder;
  QRSIS fresh;
  EXPECT_FALSE(Save(fresh, folder.File("p")));
  UntrainedSearch failed;
  EXPECT_EQ(TrainOn(failed, UniformImage()), 1);
  EXPECT_FALSE(Save(failed, folder.File("p")));
  EXPECT_TRUE(folder.Names().empty());
}

TEST(Knowledge, IsNotSavedIntoAFolderThatIsNotThere) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_FALSE(Save(search, folder.File("missing/p")));
  EXPECT_TRUE(folder.Names().empty());
}

TEST(Knowledge, SavingLeavesTheObjectTrained) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  const ImagePtr scene = SceneOf(SmallPart(), {.x = 90, .y = 75, .angle_deg = 20});
  const Found before = LookFor(search, scene);
  ASSERT_TRUE(Save(search, folder.File("p")));
  ASSERT_TRUE(Save(search, folder.File("p")));  // over the first
  ExpectSameResult(LookFor(search, scene), before);
}

TEST(Knowledge, MissingFileIsNotLoaded) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_FALSE(Load(search, folder.File("missing")));
  TrainedSearch same(ImageOf(SmallPart()));
  ExpectSamePattern(search, same);  // what it had learnt stays
}

TEST(Knowledge, TruncatedFileIsNotLoaded) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  ASSERT_TRUE(Save(search, folder.File("p")));
  std::string bytes = Contents(folder.File("p_qrsi.bmp"));
  bytes.resize(bytes.size() - 1000);  // the size is still readable, the pixels are not
  WriteBytes(folder.File("cut_qrsi.bmp"), bytes);
  {
    const LossByDesign image_made_for_the_file;
    EXPECT_FALSE(Load(search, folder.File("cut")));
  }
  TrainedSearch same(ImageOf(SmallPart()));
  ExpectSamePattern(search, same);
}

TEST(Knowledge, FileThatIsNoImageIsNotLoaded) {
  const ScratchFolder folder;
  UntrainedSearch search;
  WriteBytes(folder.File("text_qrsi.bmp"), "hello");
  WriteBytes(folder.File("empty_qrsi.bmp"), "");
  EXPECT_FALSE(Load(search, folder.File("text")));
  EXPECT_FALSE(Load(search, folder.File("empty")));
  ExpectZeroResult({LookFor(search, UniformImage()).status, 0, 0, 0, 0, 0}, 1);
}

TEST(Knowledge, ImageWithoutAPatternIsLoadedYetTrainsNothing) {
  const ScratchFolder folder;
  ASSERT_EQ(im_file_write(UniformImage(40, 30).get(), (folder.File("flat_qrsi.bmp")).c_str(), 1),
            0);
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_TRUE(Load(search, folder.File("flat")));
  EXPECT_EQ(search.GetPatternDx(), 40);
  EXPECT_EQ(search.GetPatternDy(), 30);
  EXPECT_EQ(LookFor(search, ImageOf(SmallPart())).status, 1);
  EXPECT_FALSE(Save(search, folder.File("again")));
}

TEST(Knowledge, IsLoadedWithoutInitializeYetTrainsNothing) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  ASSERT_TRUE(Save(search, folder.File("p")));
  QRSIS uninitialised;
  EXPECT_TRUE(Load(uninitialised, folder.File("p")));
  EXPECT_EQ(uninitialised.GetPatternDx(), 100);
  EXPECT_EQ(LookFor(uninitialised, ImageOf(SmallPart())).status, 1);
}

TEST(Knowledge, IsTrainedWithTheParametersInForce) {
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  ASSERT_TRUE(Save(search, folder.File("p")));
  UntrainedSearch loaded;
  loaded.SetParams(40, 15, 3000, 80);
  ASSERT_TRUE(Load(loaded, folder.File("p")));
  const CCrawler& set = *static_cast<CCrawler*>(loaded.GetCrawlerPatternData());
  EXPECT_EQ(set.edge_threshold, 40);
  EXPECT_EQ(set.min_size, 15);
  EXPECT_EQ(set.max_size, 3000);
}

TEST(Knowledge, ThresholdIsEstimatedAgain) {
  const ScratchFolder folder;
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  ASSERT_TRUE(Save(search, folder.File("p")));
  UntrainedSearch loaded;
  loaded.SetParams(-1, 10, 100000, 80);
  ASSERT_TRUE(Load(loaded, folder.File("p")));
  EXPECT_EQ(static_cast<CCrawler*>(loaded.GetCrawlerPatternData())->edge_threshold,
            ctd_compute_edge_strength(nullptr, image.get()));
}

TEST(Knowledge, ImageThatTheCrawlRefusedIsNotSaved) {
  // The image library writes 8-bit grey only.
  const ScratchFolder folder;
  TrainedSearch search(ImageOf(SmallPart()));
  ASSERT_EQ(search.TrainIt(ImagePtr(im_create(2, 20, 20)).get()), 0);
  EXPECT_FALSE(Save(search, folder.File("p")));
  EXPECT_TRUE(folder.Names().empty());
}

}  // namespace
}  // namespace orvandel::test
