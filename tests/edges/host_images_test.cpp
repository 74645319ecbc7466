#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/image_patterns.h"

// Images that a host lays over its own pixels: rows in any order, with foreign bytes between them.
namespace orvandel::test {
namespace {

constexpr std::uint8_t kForeign = 0xCD;
constexpr int kGap = 5;

/// Rows from the bottom of one buffer to its top, foreign bytes on both sides of each.
class BottomUpImage {
 public:
  explicit BottomUpImage(const Grid& grid)
      : stride_(Width(grid) + kGap),
        buffer_(static_cast<std::size_t>(stride_ * Height(grid) + kGap), kForeign) {
    for (int y = 0; y < Height(grid); ++y) {
      rows_.push_back(buffer_.data() + kGap + (Height(grid) - 1 - y) * stride_);
      for (int x = 0; x < Width(grid); ++x)
        rows_.back()[x] = static_cast<std::uint8_t>(At(grid, x, y));
    }
    image_ = {1, Width(grid), Height(grid), rows_.data()};
  }

  tImage& image() { return image_; }

  bool ForeignBytesAreWhole() const {
    for (std::size_t i = 0; i < buffer_.size(); ++i) {
      const bool foreign = i % static_cast<std::size_t>(stride_) < kGap;
      if (foreign && buffer_[i] != kForeign) return false;
    }
    return true;
  }

 private:
  int stride_;
  std::vector<std::uint8_t> buffer_;
  std::vector<std::uint8_t*> rows_;
  tImage image_{};
};

TEST(HostImages, AreReadAndWrittenThroughTheirRowsOnly) {
  constexpr unsigned kSeed = 31;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (const int width : {1, 4, 5, 6, 16, 33}) {
    for (const int height : {1, 4, 5, 6, 19}) {
      for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
        BottomUpImage host(pattern.grid);
        CEdgeImgComplement edges;
        ASSERT_EQ(edges.SetSize(width, height), 0);
        EXPECT_EQ(SubCanny(&host.image(), 4, &edges), 0);
        const Grid expected =
            height < 5 ? pattern.grid
                       : ReferenceEdgeMap(width, height, ReferenceSubCanny(pattern.grid, 4));
        EXPECT_EQ(GridOf(host.image()), expected) << pattern;
        EXPECT_TRUE(host.ForeignBytesAreWhole()) << pattern;
      }
    }
  }
}

TEST(HostImages, RowsMayBeBlocksOfTheirOwn) {
  const Grid step = Painted(17, 9, [](int x, int) { return x < 8 ? 10 : 200; });
  std::vector<std::vector<std::uint8_t>> blocks;
  std::vector<std::uint8_t*> rows;
  for (const std::vector<int>& row : step)
    blocks.emplace_back(row.begin(), row.end());
  for (auto& block : blocks)
    rows.push_back(block.data());
  tImage image{1, 17, 9, rows.data()};
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(17, 9), 0);
  EXPECT_EQ(SubCanny(&image, 4, &edges), 0);
  EXPECT_EQ(GridOf(image), ReferenceEdgeMap(17, 9, ReferenceSubCanny(step, 4)));
}

TEST(HostImages, MayBeTheHeadOfALargerRecord) {
  struct CameraFrame {
    tImage head;
    std::uint64_t time_stamp;
  };
  const Grid step = Painted(17, 9, [](int x, int) { return x < 8 ? 10 : 200; });
  BottomUpImage pixels(step);
  CameraFrame frame{pixels.image(), 0x0123456789ABCDEF};
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(17, 9), 0);
  EXPECT_EQ(SubCanny(&frame.head, 4, &edges), 0);
  EXPECT_EQ(GridOf(frame.head), ReferenceEdgeMap(17, 9, ReferenceSubCanny(step, 4)));
  EXPECT_EQ(frame.time_stamp, 0x0123456789ABCDEFu);
}

}  // namespace
}  // namespace orvandel::test
