#include "tests/endurance/frames.h"

#include <algorithm>
#include <cmath>

#include "tests/search/small_scenes.h"
#include "tests/support/images.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

constexpr int kLargestWidth = 400;
constexpr int kLargestHeight = 300;

/// Small sizes are as frequent as large ones.
int RandomSize(UniformRandom& random, int largest) {
  return static_cast<int>(std::exp(random.Real(0.0, std::log(largest + 1.0))));
}

ImagePtr Noise(UniformRandom& random, int width, int height) {
  const int lowest = random.Integer(0, 200);
  const int highest = random.Integer(lowest, 255);
  return MakeImage(width, height, [&](int, int) { return random.Integer(lowest, highest); });
}

ImagePtr Checkerboard(UniformRandom& random, int width, int height) {
  const int columns = random.Integer(1, 12);
  const int rows = random.Integer(1, 12);
  return MakeImage(width, height,
                   [=](int x, int y) { return (x / columns + y / rows) % 2 == 0 ? 20 : 220; });
}

ImagePtr Waves(UniformRandom& random, int width, int height) {
  const double across = random.Real(-0.6, 0.6);
  const double down = random.Real(-0.6, 0.6);
  return MakeImage(width, height, [=](int x, int y) {
    return static_cast<int>(128 + 127 * std::sin(across * x + down * y));
  });
}

ImagePtr FrameOfSize(UniformRandom& random, int width, int height) {
  switch (random.Integer(0, 7)) {
    case 0:
      return UniformImage(width, height);
    case 1:
      return Noise(random, width, height);
    case 2:
      return Checkerboard(random, width, height);
    case 3:
      return Waves(random, width, height);
    default:
      return RandomScene(random, SmallPart());
  }
}

}  // namespace

ImagePtr EndurancePattern() {
  return ImageOf(SmallPart());
}

ImagePtr FrameOf(std::uint32_t index) {
  UniformRandom random(index);
  const int width = RandomSize(random, kLargestWidth);
  const int height = RandomSize(random, kLargestHeight);
  return FrameOfSize(random, width, height);
}

ImagePtr LargestFrameOf(std::uint32_t index) {
  UniformRandom random(index);
  return FrameOfSize(random, kLargestWidth, kLargestHeight);
}

}  // namespace orvandel::test
