#include "tests/reference/edge_strength.h"

#include <algorithm>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/support/contour_sets.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

int Proposal(const Grid& grid) {
  return ctd_compute_edge_strength(nullptr, ImageOf(grid).get());
}

/// Five equal rows, so that row 2 alone has magnitudes, and columns alone matter. A step up by H
/// and down again, 4 columns each, gives horizontal gradients H/2, H, H/2 and -H/2, -H, -H/2,
/// rounded down; the magnitude is 0.7 of that. One step of every height from 2 to `highest` so fills
/// every bin up to 0.7 * highest, and 20 more of height 10 (gradients of 5, magnitude 3.5) make bin 3
/// the fullest. Made into columns of steps the gradients are H/2, H, H, H/2; there height 5 does.
class StripOfSteps {
 public:
  StripOfSteps(int base, int highest, int repeated = 10) : row_(6, base) {
    for (int height = 2; height <= highest; ++height)
      AddStep(height);
    for (int i = 0; i < 20; ++i)
      AddStep(repeated);
  }

  int& operator[](std::size_t column) { return row_[column]; }

  Grid Image() const { return Grid(5, row_); }

 private:
  void AddStep(int height) {
    const int base = row_.back();
    row_.insert(row_.end(), 4, base < 128 ? base + height : base - height);
    row_.insert(row_.end(), 4, base);
  }

  std::vector<int> row_;
};

void ExpectPeaks(const Grid& image, int least, int most) {
  const ReferencePeaks peaks = ReferenceFindPeaks(ReferenceMagnitudes(image));
  EXPECT_EQ(peaks.least, least);
  EXPECT_EQ(peaks.most, most);
}

TEST(EdgeStrength, APeakAtBin3AndTheFirstGapAtBin60Give8) {
  // 0.7 * 85 = 59.5 is the highest magnitude. 0.2 * 57 = 11.4, less 3.
  const Grid strip = StripOfSteps(20, 85).Image();
  ExpectPeaks(strip, 60, 3);
  EXPECT_EQ(Proposal(strip), 8);
}

TEST(EdgeStrength, AProposalMayBe13) {
  // 0.7 * 118 = 82.6: the first gap is bin 83, 0.2 * 80 = 16, less 3.
  const Grid strip = StripOfSteps(20, 118).Image();
  ExpectPeaks(strip, 83, 3);
  EXPECT_EQ(Proposal(strip), 13);
}

TEST(EdgeStrength, TheProductIsTruncated) {
  // Gaps at 62 and at 63: 0.2 * 59 = 11.8 and 0.2 * 60 = 12.
  EXPECT_EQ(Proposal(StripOfSteps(20, 88).Image()), 8);  // 61.6
  EXPECT_EQ(Proposal(StripOfSteps(20, 89).Image()), 9);  // 62.3
}

TEST(EdgeStrength, TheFirstColumnComparesWithTheTwoOutermostColumns) {
  // Every bin up to 61 is filled by steps of up to 88. The gradient at column 2 is
  // ((f3 + f4) - (f0 + f1)) / 2: a column 0 that is 178 darker makes it 89, magnitude 62, and so
  // fills the next bin. All other columns leave column 0 out.
  StripOfSteps strip(178, 88);
  EXPECT_EQ(Proposal(strip.Image()), 8);
  strip[0] = 0;
  ExpectPeaks(strip.Image(), 63, 3);
  EXPECT_EQ(Proposal(strip.Image()), 9);
}

TEST(EdgeStrength, GradientsAreRoundedDownOnBothSidesOfZero) {
  // At column 2 again: 177 / 2 becomes 88, magnitude 61, and -177 / 2 becomes -89, magnitude 62.
  StripOfSteps brighter(178, 88);
  brighter[0] = 178 - 177;
  EXPECT_EQ(Proposal(brighter.Image()), 8);
  StripOfSteps darker(70, 88);
  darker[0] = 70 + 177;
  EXPECT_EQ(Proposal(darker.Image()), 9);
}

TEST(EdgeStrength, StepsAlongYCountTheSame) {
  const Grid strip = Transposed(StripOfSteps(20, 85, 5).Image());
  ExpectPeaks(strip, 60, 3);
  EXPECT_EQ(Proposal(strip), 8);
}

TEST(EdgeStrength, AUniformImageGives10) {
  EXPECT_EQ(Proposal(Painted(40, 30, [](int, int) { return 128; })), 10);
}

TEST(EdgeStrength, AProposalBelow1Gives10) {
  // A strip with its peak at 3 and its first gap at 22 (0.7 * 30 = 21): 0.2 * 19 = 3.8, less 3 is 0.
  const Grid strip = StripOfSteps(20, 30).Image();
  ExpectPeaks(strip, 22, 3);
  EXPECT_EQ(Proposal(strip), 10);
  // First gap at 23: 0.2 * 20 = 4, less 3 is 1.
  const Grid just_enough = StripOfSteps(20, 32).Image();  // 22.4
  ExpectPeaks(just_enough, 23, 3);
  EXPECT_EQ(Proposal(just_enough), 1);
}

TEST(EdgeStrength, ImagesUnder5PixelsGive10) {
  for (int size = 1; size <= 4; ++size) {
    EXPECT_EQ(Proposal(Painted(size, 50, [](int x, int y) { return 97 * x * y % 256; })), 10);
    EXPECT_EQ(Proposal(Painted(50, size, [](int x, int y) { return 97 * x * y % 256; })), 10);
  }
}

TEST(EdgeStrength, AnotherPixelTypeOrNoImageGives13) {
  const ImagePtr image = ImageOf(StripOfSteps(20, 85).Image());
  for (const int type : {0, 2, -1}) {
    image->type = type;
    EXPECT_EQ(ctd_compute_edge_strength(nullptr, image.get()), 13);
  }
  image->type = 1;
  EXPECT_EQ(ctd_compute_edge_strength(nullptr, nullptr), 13);
}

TEST(EdgeStrength, TouchesNeitherImageNorSet) {
  const Grid strip = StripOfSteps(20, 85).Image();
  const ImagePtr image = ImageOf(strip);
  const ContourHandle set = MakeSet({TestContour{{{1, 2, 3, 4}}, false}});
  EXPECT_EQ(ctd_compute_edge_strength(set.get(), image.get()), 8);
  EXPECT_EQ(GridOf(*image), strip);
  EXPECT_EQ(ctd_point_count(set.get()), 1);
  EXPECT_EQ(ctd_min_size(set.get()), 30);
  EXPECT_EQ(Fields(set).edge_threshold, 0);
  EXPECT_EQ(ctd_edgeIm(set.get()), nullptr);
}

TEST(EdgeStrength, BuildsTheTablesByItself) {
  DeleteSubCannyTable();
  EXPECT_EQ(Proposal(StripOfSteps(20, 85).Image()), 8);
}

TEST(EdgeStrengthReference, EverySmallSize) {
  constexpr unsigned kSeed = 91;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int height = 1; height <= 12; ++height) {
    for (int width = 1; width <= 12; ++width) {
      for (const NamedGrid& pattern : ImagePatterns(width, height, random))
        ASSERT_EQ(Proposal(pattern.grid), ReferenceEdgeStrength(pattern.grid)) << pattern;
    }
  }
}

/// Steps of all heights in random order and directions under a little noise: images whose
/// magnitudes leave their first gap and their peak in ever other bins.
Grid RandomSteps(UniformRandom& random) {
  const bool along_x = Below(random, 2) == 0;
  const int tallest = 60 + Below(random, 140);
  std::vector<int> row(6, 20);
  for (int height = 2; height <= tallest; ++height) {
    const int shown = Below(random, 8) == 0 ? 5 : height;
    row.insert(row.end(), 4, 20 + shown);
    row.insert(row.end(), 4, 20);
  }
  const int noise = 1 + Below(random, 3);
  Grid image = Painted(static_cast<int>(row.size()), 5 + Below(random, 6), [&](int x, int) {
    return row[static_cast<std::size_t>(x)] + Below(random, noise);
  });
  return along_x ? image : Transposed(image);
}

TEST(EdgeStrengthReference, ImagesOfManyProposals) {
  constexpr unsigned kSeed = 92;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  std::set<int> proposals;
  for (int i = 0; i < 400; ++i) {
    const Grid image = RandomSteps(random);
    ASSERT_EQ(Proposal(image), ReferenceEdgeStrength(image)) << i;
    proposals.insert(ReferenceEdgeStrength(image));
  }
  EXPECT_GT(proposals.size(), 8u) << "the images no longer tell formulations apart";
}

}  // namespace
}  // namespace orvandel::test
