// Training: what it learns, its status, and what it does with images it cannot use.

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"

namespace orvandel::test {
namespace {

/// Whether the object takes itself for trained: an untrained one returns 1 from a search.
bool IsTrained(QRSIS& search) {
  return LookFor(search, UniformImage()).status != 1;
}

/// An 8-bit image that calls itself another type.
ImagePtr OfAnotherType(int width, int height) {
  return ImagePtr(im_create(2, width, height));
}

void ExpectSameContours(void* actual, void* expected) {
  ASSERT_EQ(ctd_contour_count(actual), ctd_contour_count(expected));
  for (int c = 0; c < ctd_contour_count(expected); ++c) {
    ASSERT_EQ(ctd_contour_size(actual, c), ctd_contour_size(expected, c));
    EXPECT_EQ(ctd_contour_closed(actual, c), ctd_contour_closed(expected, c));
    for (int k = 0; k < ctd_contour_size(expected, c); ++k) {
      EXPECT_TRUE(SameBits(ctd_contour_x(actual, c, k), ctd_contour_x(expected, c, k)));
      EXPECT_TRUE(SameBits(ctd_contour_y(actual, c, k), ctd_contour_y(expected, c, k)));
      EXPECT_TRUE(SameBits(ctd_contour_g(actual, c, k), ctd_contour_g(expected, c, k)));
      EXPECT_EQ(ctd_contour_f(actual, c, k), ctd_contour_f(expected, c, k));
    }
  }
}

void ExpectReference(QRSIS& search, double x, double y) {
  double ref_x = 0;
  double ref_y = 0;
  search.GetPatternRef(&ref_x, &ref_y);
  EXPECT_TRUE(SameBits(ref_x, x));
  EXPECT_TRUE(SameBits(ref_y, y));
}

TEST(Training, LearnsContoursAndReferencePointOfTheReferenceChain) {
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(image).get(), {}), 0);
  ExpectSameContours(search.GetCrawlerPatternData(), reference.contours.get());
  ExpectReference(search, reference.ref_x, reference.ref_y);
}

TEST(Training, ReferencePointIsTheMeanOfTheContourPoints) {
  // A square of side 40 in the middle of 60 x 60: positions in which the centre of the first pixel
  // is (0.5, 0.5) have its centre at (30, 30). Of about 160 points, one more or less at a corner,
  // 20 pixels away, moves the mean by 0.125; smoothed corners and the seam may cost or add four.
  TrainedSearch search(ImageOf(PartOf(render::Rectangle({0, 0}, 40, 40), {60, 60})));
  double x = 0;
  double y = 0;
  search.GetPatternRef(&x, &y);
  EXPECT_NEAR(x, 30, 0.5);
  EXPECT_NEAR(y, 30, 0.5);

  void* set = search.GetCrawlerPatternData();
  double sum_x = 0;
  double sum_y = 0;
  for (int c = 0; c < ctd_contour_count(set); ++c) {
    for (int k = 0; k < ctd_contour_size(set, c); ++k) {
      sum_x += ctd_contour_x(set, c, k);
      sum_y += ctd_contour_y(set, c, k);
    }
  }
  EXPECT_NEAR(x, sum_x / ctd_point_count(set), 1e-9);  // the order of the sum may differ
  EXPECT_NEAR(y, sum_y / ctd_point_count(set), 1e-9);
}

TEST(Training, TakesTheSizeOfItsImage) {
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_EQ(search.GetPatternDx(), 100);
  EXPECT_EQ(search.GetPatternDy(), 80);
}

TEST(Training, OverwritesTheImageItIsGiven) {
  // The image becomes an edge map, and the crawl takes every contour pixel out of that.
  const ImagePtr image = ImageOf(Triangle());
  const ImagePtr given = CopyOf(image);
  QRSIS search;
  search.Initialize();
  ASSERT_EQ(search.TrainIt(given.get()), 0);
  int num_bright = 0;
  for (int y = 0; y < given->height; ++y) {
    for (int x = 0; x < given->width; ++x)
      num_bright += given->row[y][x] != 0 ? 1 : 0;
  }
  EXPECT_EQ(num_bright, 0);
}

TEST(Training, WithoutInitializeReturns3AndKnowsTheSize) {
  QRSIS search;
  EXPECT_EQ(TrainOn(search, ImageOf(SmallPart())), 3);
  EXPECT_EQ(search.GetPatternDx(), 100);
  EXPECT_EQ(search.GetPatternDy(), 80);
  EXPECT_FALSE(IsTrained(search));
}

TEST(Training, WithoutContourReturns1) {
  QRSIS search;
  search.Initialize();
  EXPECT_EQ(TrainOn(search, UniformImage(60, 50)), 1);
  EXPECT_EQ(search.GetPatternDx(), 60);
  EXPECT_EQ(search.GetPatternDy(), 50);
  EXPECT_FALSE(IsTrained(search));
}

TEST(Training, WithCurvedContoursOnlyReturns4) {
  QRSIS search;
  search.Initialize();
  EXPECT_EQ(TrainOn(search, ImageOf(CurvedPart())), 4);
  EXPECT_GT(ctd_contour_count(search.GetCrawlerPatternData()), 0);
  EXPECT_FALSE(IsTrained(search));
  // The reference point has come as far as the contours: the disc's centre, in positions of which
  // the first pixel's centre is (0.5, 0.5).
  double x = 0;
  double y = 0;
  search.GetPatternRef(&x, &y);
  EXPECT_NEAR(x, 30, 0.2);
  EXPECT_NEAR(y, 25, 0.2);
}

TEST(Training, FailureMakesATrainedObjectUntrained) {
  for (const ImagePtr& bad : {UniformImage(), ImageOf(CurvedPart())}) {
    TrainedSearch search(ImageOf(SmallPart()));
    EXPECT_TRUE(IsTrained(search));
    EXPECT_NE(TrainOn(search, bad), 0);
    EXPECT_FALSE(IsTrained(search));
    EXPECT_EQ(TrainOn(search, ImageOf(SmallPart())), 0);
    EXPECT_TRUE(IsTrained(search));
  }
}

TEST(Training, ImageOfAnotherTypeHasNoContourAtFirst) {
  QRSIS search;
  search.Initialize();
  EXPECT_EQ(search.TrainIt(OfAnotherType(31, 32).get()), 1);
  EXPECT_EQ(search.GetPatternDx(), 31);
  EXPECT_EQ(search.GetPatternDy(), 32);
  EXPECT_FALSE(IsTrained(search));
}

TEST(Training, ImageOfAnotherTypeTrainsAgainOnTheContoursBefore) {
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  EXPECT_EQ(search.TrainIt(OfAnotherType(31, 32).get()), 0);
  EXPECT_EQ(search.GetPatternDx(), 31);
  EXPECT_EQ(search.GetPatternDy(), 32);
  EXPECT_TRUE(IsTrained(search));

  // The contours are smoothed and resampled once more, from where the line extraction left them.
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(image).get(), {}), 0);
  ASSERT_EQ(ReferenceTrain(reference, OfAnotherType(31, 32).get(), {}), 0);
  ExpectSameContours(search.GetCrawlerPatternData(), reference.contours.get());
  ExpectReference(search, reference.ref_x, reference.ref_y);
}

TEST(Training, WithoutAnImageReturns1AndLeavesNothing) {
  TrainedSearch search(ImageOf(SmallPart()));
  EXPECT_EQ(search.TrainIt(nullptr), 1);
  EXPECT_EQ(search.GetPatternDx(), 0);
  EXPECT_EQ(search.GetPatternDy(), 0);
  EXPECT_FALSE(IsTrained(search));
}

}  // namespace
}  // namespace orvandel::test
