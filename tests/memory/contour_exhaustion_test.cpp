// Contour sets when memory runs out: an operation gives its whole result or leaves the set, and the
// set works again afterwards.

#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/checked_contour_file.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/memory/exhaustion.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

constexpr int kThreshold = 16;

template <typename T>
std::string BytesOf(const T* values, std::int32_t count) {
  if (count < 1) return {};
  return {reinterpret_cast<const char*>(values), sizeof(T) * static_cast<std::size_t>(count)};
}

/// All that a set says of its contours.
std::string Everything(const ContourHandle& set) {
  const CCrawler& fields = Fields(set);
  const std::int32_t points = fields.point_count;
  return Bytes(fields.contour_count, points) + BytesOf(fields.contours, fields.contour_count) +
         BytesOf(fields.x, points) + BytesOf(fields.y, points) + BytesOf(fields.g, points) +
         BytesOf(fields.f, points);
}

int Crawl(const ContourHandle& set, const ImagePtr& image) {
  return ctd_crawl(set.get(), image.get(), kThreshold, 10, 100000);
}

ContourHandle CrawledSet(const render::Part& part) {
  ContourHandle set = MakeEmptySet();
  const ImagePtr image = ImageOf(part);
  EXPECT_EQ(Crawl(set, image), 0);
  EXPECT_GT(ctd_contour_count(set.get()), 0);
  return set;
}

TEST(ContourExhaustion, ASetThatCannotBeMadeIsNull) {
  FailEachAllocation([](Trial& trial) {
    ContourHandle set;
    EXPECT_EQ(trial.Fail([&] { set.reset(ctd_create()); }), Ending::kReturned);
    EXPECT_EQ(set == nullptr, trial.HasFailed());
    set = MakeEmptySet();
    EXPECT_NE(set, nullptr);
  });
}

TEST(ContourExhaustion, ACrawlLeavesTheContoursOrReplacesThem) {
  const std::string before = Everything(CrawledSet(Triangle()));
  const std::string whole = Everything(CrawledSet(SmallPart()));
  int num_left = 0;
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle set = CrawledSet(Triangle());
    const ImagePtr part = ImageOf(SmallPart());
    const ImagePtr copy = CopyOf(part);
    int status = -1;
    EXPECT_EQ(trial.Fail([&] { status = Crawl(set, copy); }), Ending::kReturned);
    EXPECT_EQ(status, 0);
    const std::string after = Everything(set);
    EXPECT_TRUE(after == before || after == whole);
    if (after == before) ++num_left;
    EXPECT_EQ(Crawl(set, part), 0);
    EXPECT_EQ(Everything(set), whole);
  });
  EXPECT_GT(num_left, 0);
}

TEST(ContourExhaustion, AFirstCrawlThatFailsFindsNothing) {
  const std::string whole = Everything(CrawledSet(SmallPart()));
  const std::string nothing = Everything(MakeEmptySet());
  FailEachAllocation([&](Trial& trial) {
    DeleteSubCannyTable();  // to be built within the trial
    const ContourHandle set = MakeEmptySet();
    const ImagePtr image = ImageOf(SmallPart());
    EXPECT_EQ(trial.Fail([&] { Crawl(set, image); }), Ending::kReturned);
    const std::string after = Everything(set);
    EXPECT_TRUE(after == nothing || after == whole);
    EXPECT_EQ(Crawl(set, ImageOf(SmallPart())), 0);
    EXPECT_EQ(Everything(set), whole);
    DeleteSubCannyTable();
  });
}

TEST(ContourExhaustion, ResamplingLeavesTheSetOrReplacesIt) {
  const ContourHandle set = CrawledSet(SmallPart());
  const std::string before = Everything(set);
  ctd_resample(set.get());
  const std::string whole = Everything(set);
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle crawled = CrawledSet(SmallPart());
    EXPECT_EQ(trial.Fail([&] { EXPECT_EQ(ctd_resample(crawled.get()), 0); }), Ending::kReturned);
    const std::string after = Everything(crawled);
    EXPECT_TRUE(after == before || after == whole);
    if (after == before) ctd_resample(crawled.get());
    EXPECT_EQ(Everything(crawled), whole);
  });
}

TEST(ContourExhaustion, SortingAlwaysSorts) {
  TestContour one, three;
  one.points.resize(1);
  three.points.resize(3);
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle set = MakeSet({one, three, one, three});
    EXPECT_EQ(trial.Fail([&] { ctd_sort(set.get(), 1); }), Ending::kReturned);
    EXPECT_EQ(Fields(set).contours[0].start, 1);
    EXPECT_EQ(Fields(set).contours[1].start, 5);
    EXPECT_EQ(Fields(set).contours[2].start, 0);
    EXPECT_EQ(Fields(set).contours[3].start, 4);
  });
}

TEST(ContourExhaustion, ACopyIsWholeOrLeavesItsDestination) {
  const ContourHandle source = CrawledSet(SmallPart());
  const std::string whole = Everything(source);
  const std::string before = Everything(CrawledSet(Triangle()));
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle copy = CrawledSet(Triangle());
    EXPECT_EQ(trial.Fail([&] { ctd_copy(source.get(), copy.get()); }), Ending::kReturned);
    EXPECT_EQ(Everything(copy), trial.HasFailed() ? before : whole);
    ctd_copy(source.get(), copy.get());
    EXPECT_EQ(Everything(copy), whole);
  });
}

TEST(ContourExhaustion, LoadingGives4AndAnEmptySet) {
  const ScratchFolder folder;
  const std::string path = folder.File("set.ctd");
  const ContourHandle source = CrawledSet(SmallPart());
  ASSERT_EQ(ctd_save(source.get(), path.c_str()), 0);
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle set = CrawledSet(Triangle());
    int status = -1;
    EXPECT_EQ(trial.Fail([&] { status = ctd_load(set.get(), path.c_str()); }), Ending::kReturned);
    EXPECT_EQ(status, trial.HasFailed() ? 4 : 0);
    if (trial.HasFailed()) {
      EXPECT_EQ(Fields(set).x, nullptr);
      EXPECT_EQ(Fields(set).contours, nullptr);
    }
    EXPECT_EQ(ctd_load(set.get(), path.c_str()), 0);
    EXPECT_EQ(Everything(set), Everything(source));
  });
}

TEST(ContourExhaustion, CheckedLoadingLeavesTheSet) {
  const ScratchFolder folder;
  const std::string path = folder.File("set.ctd");
  const ContourHandle source = CrawledSet(SmallPart());
  const std::string before = Everything(CrawledSet(Triangle()));
  ASSERT_EQ(ctd_save(source.get(), path.c_str()), 0);
  FailEachAllocation([&](Trial& trial) {
    const ContourHandle set = CrawledSet(Triangle());
    ContourFileError error;
    EXPECT_EQ(trial.Fail([&] { error = LoadContoursChecked(set.get(), path.c_str()); }),
              Ending::kReturned);
    EXPECT_EQ(error.fault,
              trial.HasFailed() ? ContourFileFault::kOutOfMemory : ContourFileFault::kNone);
    EXPECT_EQ(Everything(set), trial.HasFailed() ? before : Everything(source));
    EXPECT_FALSE(LoadContoursChecked(set.get(), path.c_str()).IsError());
    EXPECT_EQ(Everything(set), Everything(source));
  });
}

TEST(ContourExhaustion, AListingIsWrittenOrGives9) {
  const ScratchFolder folder;
  const std::string path = folder.File("a listing whose path is longer than short strings.txt");
  const ContourHandle set = CrawledSet(SmallPart());
  FailEachAllocation([&](Trial& trial) {
    int status = -1;
    EXPECT_EQ(trial.Fail([&] { status = ctd_dump(set.get(), path.c_str()); }), Ending::kReturned);
    EXPECT_TRUE(status == 0 || status == 9) << status;
    EXPECT_EQ(ctd_dump(set.get(), path.c_str()), 0);
  });
}

TEST(ContourExhaustion, TheImageIsWrittenWholeOrNotAtAll) {
  const ScratchFolder folder;
  const std::string path = folder.File("image.bmp");
  const ContourHandle set = CrawledSet(SmallPart());
  ctd_save_img(set.get(), path.c_str());
  const std::string whole = Contents(path);
  FailEachAllocation([&](Trial& trial) {
    std::filesystem::remove(path);
    EXPECT_EQ(trial.Fail([&] { EXPECT_EQ(ctd_save_img(set.get(), path.c_str()), 0); }),
              Ending::kReturned);
    if (std::filesystem::exists(path)) {
      EXPECT_EQ(Contents(path), whole);
    }
    ctd_save_img(set.get(), path.c_str());
    EXPECT_EQ(Contents(path), whole);
  });
}

}  // namespace
}  // namespace orvandel::test
