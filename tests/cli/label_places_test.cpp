#include "cli/label_places.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orvandel::cli::test {
namespace {

bool Touch(const PixelBox& a, const PixelBox& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

TEST(LabelPlaces, ALabelStandsAtTheRightOfItsFigure) {
  const PixelBox figure = {100, 100, 200, 180};
  const PixelBox label = LabelPlaces(640, 480, {figure}).Place(figure, 60, 20);
  EXPECT_GT(label.left, figure.right);
  EXPECT_NEAR((label.top + label.bottom) / 2, 140, 1e-9);
  EXPECT_EQ(label.right - label.left, 60);
}

TEST(LabelPlaces, AtTheRightBorderItStandsElsewhere) {
  const PixelBox figure = {500, 100, 630, 180};
  const PixelBox label = LabelPlaces(640, 480, {figure}).Place(figure, 60, 20);
  EXPECT_FALSE(Touch(label, figure));
  EXPECT_LE(label.right, 640);
}

TEST(LabelPlaces, LabelsKeepOffOtherFiguresAndLabels) {
  const PixelBox left = {100, 100, 200, 180};
  const PixelBox right = {230, 100, 330, 180};
  LabelPlaces places(640, 480, {left, right});
  const PixelBox of_left = places.Place(left, 60, 20);
  const PixelBox of_right = places.Place(right, 60, 20);
  const PixelBox of_left_again = places.Place(left, 60, 20);
  for (const PixelBox& label : {of_left, of_right, of_left_again}) {
    EXPECT_FALSE(Touch(label, left));
    EXPECT_FALSE(Touch(label, right));
  }
  EXPECT_FALSE(Touch(of_left, of_right));
  EXPECT_FALSE(Touch(of_left, of_left_again));
}

TEST(LabelPlaces, WithoutRoomALabelStaysInThePicture) {
  const PixelBox figure = {-50, -50, 700, 500};
  const PixelBox label = LabelPlaces(640, 480, {figure}).Place(figure, 60, 20);
  EXPECT_GE(label.left, 0);
  EXPECT_GE(label.top, 0);
  EXPECT_LE(label.right, 640);
  EXPECT_LE(label.bottom, 480);
}

}  // namespace
}  // namespace orvandel::cli::test
