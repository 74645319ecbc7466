#include "image/partial_gradients.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/grey_image.h"
#include "tests/support/uniform_random.h"

namespace orvandel {
namespace {

using test::GreyImage;
using test::UniformRandom;

GreyImage RandomImage(UniformRandom& random, int width, int height) {
  GreyImage image(width, height);
  for (auto& pixel : image.pixels)
    pixel = static_cast<std::uint8_t>(random.Integer(0, 255));
  return image;
}

void ExpectWhole(const PixelBox& box, const GradientPlane& part, const GradientPlane& whole) {
  for (int y = std::max(box.top, 0); y < std::min(box.bottom, whole.height); ++y) {
    for (int x = std::max(box.left, 0); x < std::min(box.right, whole.width); ++x)
      ASSERT_EQ(part.Row(y)[x], whole.Row(y)[x]) << x << ' ' << y;
  }
}

TEST(PartialGradients, AreThoseOfTheWholeInEachBoxAskedFor) {
  UniformRandom random(4);
  PartialGradients of_image;
  PartialGradients of_plane;
  // The same objects throughout, so that what earlier images left there would show.
  for (int round = 0; round < 60; ++round) {
    const int width = random.Integer(1, 200);
    const int height = random.Integer(1, 90);
    const GreyImage image = RandomImage(random, width, height);
    const UnitImage units(image.View());
    const GreyPlane plane = ToPlane(units);
    GradientPlane whole;
    ComputeGradients(plane, whole);
    of_image.Start(units);
    of_plane.Start(plane);
    for (int i = 0; i < 6; ++i) {
      const int left = random.Integer(-20, width + 10);
      const int top = random.Integer(-20, height + 10);
      const PixelBox box = {left, top, left + random.Integer(0, 90), top + random.Integer(0, 60)};
      of_image.Make(box);
      of_plane.Make(box);
      ExpectWhole(box, of_image.Plane(), whole);
      ExpectWhole(box, of_plane.Plane(), whole);
    }
    of_image.MakeAll();
    ExpectWhole({0, 0, width, height}, of_image.Plane(), whole);
  }
}

}  // namespace
}  // namespace orvandel
