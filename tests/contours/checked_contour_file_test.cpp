#include "orvandel/classic/checked_contour_file.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/images.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

using I = std::int32_t;
using Fault = ContourFileFault;

// Where the fields of the small set's file lie.
constexpr std::size_t kHeaderBytes = 12;
constexpr std::size_t kRecordBytes = 12;
constexpr std::size_t kNumContours = 3;
constexpr std::size_t kNumPoints = 6;
constexpr std::size_t kX = kHeaderBytes + kRecordBytes * kNumContours;
constexpr std::size_t kY = kX + 8 * kNumPoints;
constexpr std::size_t kG = kY + 8 * kNumPoints;
constexpr std::size_t kSmallFileBytes = kG + 8 * kNumPoints + 4 * kNumPoints;

constexpr std::size_t RecordAt(std::size_t contour) {
  return kHeaderBytes + kRecordBytes * contour;
}

/// Sizes 2, 3 and 1; coordinates that need every bit.
ContourHandle FullPrecisionSet() {
  ContourHandle set =
      MakeSet({{{{0.1, 10.7, -0.5, 0}, {1 / 3.0, 11, 0.25, 4}}, false},
               {{{2, 12, 1.5, 1}, {3, 13, 1.25, 0}, {4, 14, 2.5, 0xFFFFFFFFu}}, true},
               {{{5, -15, -1e-300, 2}}, false}});
  Fields(set).edge_threshold = 23;
  return set;
}

std::string BytesOf(const ContourHandle& set, const ScratchFolder& folder) {
  std::filesystem::remove(
      folder.File("saved.ctd"));  // cutting a file takes some systems their time
  EXPECT_EQ(ctd_save(set.get(), folder.File("saved.ctd").c_str()), 0);
  return Contents(folder.File("saved.ctd"));
}

std::string SmallFile(const ScratchFolder& folder) {
  return BytesOf(FullPrecisionSet(), folder);
}

template <typename Value>
std::string With(std::string bytes, std::size_t at, Value value) {
  std::memcpy(&bytes[at], &value, sizeof value);
  return bytes;
}

/// Reads the bytes as a file. After an error the set must be the one it was, arrays included.
Fault FaultOf(const std::string& bytes, const ScratchFolder& folder) {
  std::filesystem::remove(folder.File("read.ctd"));
  WriteBytes(folder.File("read.ctd"), bytes);
  const ContourHandle set = FullPrecisionSet();
  const CCrawler& fields = Fields(set);
  const double* const x = fields.x;
  const ContourRecord* const contours = fields.contours;
  const std::string before = BytesOf(set, folder);

  const ContourFileError error = LoadContoursChecked(set.get(), folder.File("read.ctd").c_str());
  EXPECT_EQ(error.IsError(), error.fault != Fault::kNone);
  EXPECT_EQ(error.IsError(), std::strlen(error.text) > 0);
  if (error.IsError()) {
    EXPECT_EQ(fields.x, x);
    EXPECT_EQ(fields.contours, contours);
    EXPECT_EQ(BytesOf(set, folder), before) << error.text;
  } else {
    EXPECT_EQ(BytesOf(set, folder), bytes);
  }
  return error.fault;
}

std::string TextOf(const std::string& bytes, const ScratchFolder& folder) {
  WriteBytes(folder.File("read.ctd"), bytes);
  return LoadContoursChecked(MakeEmptySet().get(), folder.File("read.ctd").c_str()).text;
}

void ExpectSameAsTrustingReader(const ContourHandle& saved, const ScratchFolder& folder) {
  const std::string path = folder.File("good.ctd");
  ASSERT_EQ(ctd_save(saved.get(), path.c_str()), 0);
  const ContourHandle trusting = FullPrecisionSet();
  const ContourHandle checked = FullPrecisionSet();
  ASSERT_EQ(ctd_load(trusting.get(), path.c_str()), 0);
  const ContourFileError error = LoadContoursChecked(checked.get(), path.c_str());
  ASSERT_FALSE(error.IsError()) << error.text;
  EXPECT_EQ(Fields(checked).contour_count, Fields(trusting).contour_count);
  EXPECT_EQ(Fields(checked).point_count, Fields(trusting).point_count);
  EXPECT_EQ(Fields(checked).contour_capacity, Fields(trusting).contour_capacity);
  EXPECT_EQ(Fields(checked).point_capacity, Fields(trusting).point_capacity);
  EXPECT_EQ(BytesOf(checked, folder), BytesOf(trusting, folder));
  EXPECT_EQ(BytesOf(checked, folder), Contents(path));
}

TEST(CheckedContourFile, GoodFilesGiveTheSetOfTheTrustingReader) {
  const ScratchFolder folder;
  ExpectSameAsTrustingReader(FullPrecisionSet(), folder);
  ExpectSameAsTrustingReader(MakeEmptySet(), folder);
  const ContourHandle sorted = FullPrecisionSet();
  ctd_sort(sorted.get(), 1);
  ExpectSameAsTrustingReader(sorted, folder);
}

TEST(CheckedContourFile, ContoursOfImagesAreGood) {
  const ScratchFolder folder;
  UniformRandom random(7);
  for (int run = 0; run < 20; ++run) {
    const ImagePtr noise =
        MakeImage(60, 50, [&](int, int) { return random.Integer(0, 7) == 0 ? 200 : 40; });
    const ContourHandle set = MakeEmptySet();
    ASSERT_EQ(ctd_crawl(set.get(), noise.get(), run, 1, 100000), 0);
    ASSERT_GT(ctd_point_count(set.get()), 0);
    ExpectSameAsTrustingReader(set, folder);
    ctd_average(set.get());
    ctd_resample(set.get());
    ctd_sort(set.get(), 1);
    ExpectSameAsTrustingReader(set, folder);
  }
}

TEST(CheckedContourFile, WhatFilesDoNotHoldIsKept) {
  const ScratchFolder folder;
  WriteBytes(folder.File("set.ctd"), SmallFile(folder));
  const ContourHandle set = MakeEmptySet();
  Fields(set).step = 0.5;
  Fields(set).min_size = 4;
  Fields(set).max_size = 44;
  Fields(set).min_dist = 0.25;
  EXPECT_FALSE(LoadContoursChecked(set.get(), folder.File("set.ctd").c_str()).IsError());
  EXPECT_EQ(Fields(set).edge_threshold, 23);
  EXPECT_EQ(Fields(set).step, 0.5);
  EXPECT_EQ(Fields(set).min_size, 4);
  EXPECT_EQ(Fields(set).max_size, 44);
  EXPECT_EQ(Fields(set).min_dist, 0.25);
}

TEST(CheckedContourFile, WhatIsNoRegularFileCannotBeOpened) {
  const ScratchFolder folder;
  const ContourHandle set = FullPrecisionSet();
  const std::vector<std::string> paths = {folder.File("missing.ctd"), folder.Path().string(),
                                          "/dev/zero", ""};
  for (const std::string& path : paths) {
    const ContourFileError error = LoadContoursChecked(set.get(), path.c_str());
    EXPECT_EQ(error.fault, Fault::kCannotOpen) << path;
    EXPECT_STREQ(error.text, "cannot be opened");
  }
  EXPECT_EQ(LoadContoursChecked(set.get(), nullptr).fault, Fault::kCannotOpen);
  EXPECT_EQ(ctd_point_count(set.get()), 6);
}

TEST(CheckedContourFile, AFileCutAtAnyByteIsRefused) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  ASSERT_EQ(whole.size(), kSmallFileBytes);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Fault expected = size < kHeaderBytes ? Fault::kNoHeader : Fault::kLength;
    EXPECT_EQ(FaultOf(whole.substr(0, size), folder), expected) << size;
  }
  EXPECT_EQ(FaultOf(whole, folder), Fault::kNone);
  EXPECT_EQ(FaultOf(whole + '\0', folder), Fault::kLength);
}

TEST(CheckedContourFile, AnyFlippedBitOfACountOrRecordIsNoticed) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  for (std::size_t bit = 0; bit < 8 * kX; ++bit) {
    const std::size_t at = bit / 8;
    const bool in_edge_threshold = at >= 8 && at < kHeaderBytes;
    const bool turns_closed = at >= kHeaderBytes && (at - kHeaderBytes) % 12 == 8 && bit % 8 == 0;
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit % 8);
    EXPECT_EQ(FaultOf(damaged, folder) == Fault::kNone, in_edge_threshold || turns_closed)
        << "bit " << bit;
  }
}

TEST(CheckedContourFile, NegativeCountsAreRefused) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  EXPECT_EQ(FaultOf(With(whole, 0, I{-1}), folder), Fault::kCount);
  EXPECT_EQ(FaultOf(With(whole, 4, I{-1}), folder), Fault::kCount);
  EXPECT_EQ(FaultOf(With(whole, 4, std::numeric_limits<I>::min()), folder), Fault::kCount);
  EXPECT_EQ(TextOf(With(whole, 0, I{-2}), folder), "-2 contours of 6 points");
}

TEST(CheckedContourFile, CountsMustAgreeWithTheLength) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  const I most = std::numeric_limits<I>::max();
  EXPECT_EQ(FaultOf(With(With(whole, 0, most), 4, most), folder), Fault::kLength);
  EXPECT_EQ(FaultOf(With(whole, 0, I{2}), folder), Fault::kLength);
  EXPECT_EQ(FaultOf(With(whole, 4, I{7}), folder), Fault::kLength);
  // 12 + 12 * 3 + 28 * 6
  EXPECT_EQ(TextOf(whole + "??", folder), "218 bytes long, but 3 contours of 6 points take 216");
  EXPECT_EQ(TextOf("?", folder), "1 bytes long, but a contour file has 12 or more");
}

TEST(CheckedContourFile, ContoursWithoutPointsAreRefused) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2) + 4, I{0}), folder), Fault::kRecord);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2) + 4, I{-1}), folder), Fault::kRecord);
  EXPECT_EQ(FaultOf(Bytes(I{1}, I{0}, I{9}, I{0}, I{0}, I{0}), folder), Fault::kRecord);
}

TEST(CheckedContourFile, ContoursBeyondThePointsAreRefused) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  const I most = std::numeric_limits<I>::max();
  EXPECT_EQ(FaultOf(With(whole, RecordAt(0), I{-1}), folder), Fault::kRecord);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2), I{6}), folder), Fault::kRecord);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2) + 4, I{2}), folder), Fault::kRecord);
  const std::string wrapping = With(With(whole, RecordAt(1), most), RecordAt(1) + 4, most);
  EXPECT_EQ(FaultOf(wrapping, folder), Fault::kRecord);
  EXPECT_EQ(TextOf(With(whole, RecordAt(2) + 4, I{2}), folder),
            "contour 2 has 2 points from 5 on, of 6");
}

TEST(CheckedContourFile, ClosedIs0Or1) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(1) + 8, I{2}), folder), Fault::kClosed);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(1) + 8, I{-1}), folder), Fault::kClosed);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(1) + 8, I{0}), folder), Fault::kNone);
  EXPECT_EQ(TextOf(With(whole, RecordAt(1) + 8, I{2}), folder),
            "the closed flag of contour 1 is 2");
}

TEST(CheckedContourFile, NoTwoContoursShareAPoint) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  EXPECT_EQ(TextOf(With(whole, RecordAt(2), I{4}), folder), "point 4 belongs to two contours");
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2), I{4}), folder), Fault::kPartition);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(0) + 4, I{6}), folder), Fault::kPartition);
  EXPECT_EQ(FaultOf(With(whole, RecordAt(2), I{0}), folder), Fault::kPartition);
}

TEST(CheckedContourFile, EveryPointBelongsToAContour) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  EXPECT_EQ(TextOf(With(whole, RecordAt(0) + 4, I{1}), folder), "point 1 belongs to no contour");
  EXPECT_EQ(FaultOf(With(whole, RecordAt(1) + 4, I{2}), folder), Fault::kPartition);
  const std::string without_first = With(With(whole, RecordAt(0), I{1}), RecordAt(0) + 4, I{1});
  EXPECT_EQ(TextOf(without_first, folder), "point 0 belongs to no contour");
  // No contours at all, and 28 bytes of a point.
  EXPECT_EQ(FaultOf(Bytes(I{0}, I{1}, I{9}, 1.0, 1.0, 1.0, I{0}), folder), Fault::kPartition);
}

TEST(CheckedContourFile, PositionsAreFiniteAndWithinTheLimit) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  const std::size_t last_x = kX + 8 * 5;  // of the contour of one point, which may lie anywhere
  const std::size_t last_y = kY + 8 * 5;
  const double beyond = std::nextafter(1e6, 2e6);
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, beyond, -beyond, 5e300}) {
    EXPECT_EQ(FaultOf(With(whole, last_x, bad), folder), Fault::kCoordinate) << bad;
    EXPECT_EQ(FaultOf(With(whole, last_y, bad), folder), Fault::kCoordinate) << bad;
  }
  for (const double good : {1e6, -1e6, -0.0, 1e-320}) {
    EXPECT_EQ(FaultOf(With(whole, last_x, good), folder), Fault::kNone) << good;
    EXPECT_EQ(FaultOf(With(whole, last_y, good), folder), Fault::kNone) << good;
  }
  EXPECT_EQ(TextOf(With(whole, last_y, beyond), folder),
            "the position of point 5 is not finite, or beyond 1000000 pixels");
}

TEST(CheckedContourFile, DirectionsAreFiniteAndWithinTheLimit) {
  const ScratchFolder folder;
  const std::string whole = SmallFile(folder);
  const std::size_t second_g = kG + 8;
  for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 100.5, -100.5, 1e6})
    EXPECT_EQ(FaultOf(With(whole, second_g, bad), folder), Fault::kDirection) << bad;
  for (const double good : {100.0, -100.0, 0.0})
    EXPECT_EQ(FaultOf(With(whole, second_g, good), folder), Fault::kNone) << good;
  EXPECT_EQ(TextOf(With(whole, second_g, 1e6), folder),
            "the direction of point 1 is not finite, or beyond 100 radians");
}

TEST(CheckedContourFile, NeighboursAreNearEachOtherOnAverage) {
  const ScratchFolder folder;
  const auto fault_of = [&](const std::vector<TestPoint>& points) {
    return FaultOf(BytesOf(MakeSet({{points, false}}), folder), folder);
  };
  // 64 pixels for each point, the first included.
  EXPECT_EQ(fault_of({{0, 0}, {128, 0}}), Fault::kNone);
  EXPECT_EQ(fault_of({{0, 0}, {128.5, 0}}), Fault::kSpread);
  EXPECT_EQ(fault_of({{0, 0}, {0, 1}, {0, 2}, {0, 256}}), Fault::kNone);
  EXPECT_EQ(fault_of({{0, 0}, {0, 1}, {0, 2}, {0, 257}}), Fault::kSpread);
  const ContourHandle far_apart = MakeSet({{{{3, 4}, {1003, 4}}, true}});
  EXPECT_EQ(TextOf(BytesOf(far_apart, folder), folder), "contour 0 has 2 points on 1000 pixels");
}

}  // namespace
}  // namespace orvandel::test
