#include "shape/model/textures.h"

#include <algorithm>
#include <cmath>

#include "base/geometry.h"
#include "base/rounding.h"

namespace orvandel::shape {
namespace {

/// Method: SplitMix64; G. L. Steele Jr., D. Lea, C. H. Flood, "Fast splittable pseudorandom number generators", OOPSLA 2014.
class RandomBits {
 public:
  explicit RandomBits(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }

  /// Uniform in [low, high).
  double Real(double low, double high) {
    constexpr double kUnit = 1.0 / 9007199254740992.0;  // 2^-53
    return low + (high - low) * (static_cast<double>(Next() >> 11) * kUnit);
  }

  /// Uniform in 0 .. end - 1.
  std::int32_t Integer(std::int32_t end) {
    return static_cast<std::int32_t>(Next() % static_cast<std::uint64_t>(std::max(end, 1)));
  }

 private:
  std::uint64_t state_;
};

enum class LeafKind : std::uint8_t { kDisc, kEllipse, kBar };

struct Leaf {
  LeafKind kind = LeafKind::kDisc;
  Point centre;
  double radius = 0.0;  ///< the longer one
  double narrow = 0.0;  ///< the shorter one
  SinCos turn;
  float grey = 0.0F;
  float softness = 1.0F;  ///< width of the edge, pixels
};

Leaf RandomLeaf(RandomBits& random) {
  Leaf leaf;
  leaf.kind = static_cast<LeafKind>(random.Integer(3));
  leaf.centre = {random.Real(0.0, kTextureWidth), random.Real(0.0, kTextureHeight)};
  // Small leaves are many: radii from 4 to 55 pixels, by the power of -3/4.
  const double root = std::sqrt(random.Real(0.03, 1.0));
  leaf.radius = 4.0 / (root * std::sqrt(root));
  leaf.narrow = leaf.kind == LeafKind::kDisc      ? leaf.radius
                : leaf.kind == LeafKind::kEllipse ? leaf.radius * random.Real(0.4, 0.9)
                                                  : leaf.radius * random.Real(0.15, 0.6);
  leaf.turn = SinCosOf(random.Real(0.0, kTwoPi));
  leaf.grey = static_cast<float>(random.Real(20.0, 235.0));
  leaf.softness = static_cast<float>(random.Real(0.5, 1.5));
  return leaf;
}

/// Distance beyond the leaf's outline, about; below 0 inside.
float DistanceOutside(const Leaf& leaf, float along, float across) {
  const auto radius = static_cast<float>(leaf.radius);
  const auto narrow = static_cast<float>(leaf.narrow);
  if (leaf.kind == LeafKind::kBar)
    return std::max(std::abs(along) - radius, std::abs(across) - narrow);
  const float u = along / radius;
  const float v = across / narrow;
  return (std::sqrt(u * u + v * v) - 1.0F) * narrow;
}

void Paint(const Leaf& leaf, std::vector<float>& grey) {
  const double reach = 1.5 * leaf.radius + 2.0;
  const int left = std::max(0, static_cast<int>(leaf.centre.x - reach));
  const int right = std::min(kTextureWidth - 1, static_cast<int>(leaf.centre.x + reach));
  const int top = std::max(0, static_cast<int>(leaf.centre.y - reach));
  const int bottom = std::min(kTextureHeight - 1, static_cast<int>(leaf.centre.y + reach));
  const auto cosine = static_cast<float>(leaf.turn.cosine);
  const auto sine = static_cast<float>(leaf.turn.sine);
  for (int y = top; y <= bottom; ++y) {
    float* const row = grey.data() + static_cast<std::ptrdiff_t>(y) * kTextureWidth;
    const float dy = static_cast<float>(y) - static_cast<float>(leaf.centre.y);
    for (int x = left; x <= right; ++x) {
      const float dx = static_cast<float>(x) - static_cast<float>(leaf.centre.x);
      const float outside = DistanceOutside(leaf, cosine * dx + sine * dy, cosine * dy - sine * dx);
      const float share = std::clamp(0.5F - outside / leaf.softness, 0.0F, 1.0F);
      row[x] += share * (leaf.grey - row[x]);
    }
  }
}

/// Tiles of a pattern in a random mosaic; `Pixel` as deep as the pattern's.
template <typename Pixel>
std::vector<Pixel> MosaicOf(const std::vector<Pixel>& pixels, const PatternImage& pattern,
                            RandomBits& random) {
  const double mean_side = std::sqrt(static_cast<double>(pattern.width) * pattern.height);
  const std::int32_t side = std::clamp(static_cast<std::int32_t>(0.25 * mean_side), 1,
                                       std::min(pattern.width, pattern.height));
  std::vector<Pixel> mosaic(static_cast<std::size_t>(kTextureWidth) * kTextureHeight);
  for (std::int32_t top = 0; top < kTextureHeight; top += side) {
    for (std::int32_t left = 0; left < kTextureWidth; left += side) {
      const std::int32_t from_x = random.Integer(pattern.width - side + 1);
      const std::int32_t from_y = random.Integer(pattern.height - side + 1);
      const std::int32_t symmetry = random.Integer(8);
      for (std::int32_t y = 0; y < std::min(side, kTextureHeight - top); ++y) {
        for (std::int32_t x = 0; x < std::min(side, kTextureWidth - left); ++x) {
          std::int32_t u = (symmetry & 1) != 0 ? side - 1 - x : x;
          std::int32_t v = (symmetry & 2) != 0 ? side - 1 - y : y;
          if ((symmetry & 4) != 0) std::swap(u, v);
          mosaic[static_cast<std::size_t>(top + y) * kTextureWidth +
                 static_cast<std::size_t>(left + x)] =
              pixels[static_cast<std::size_t>(from_y + v) *
                         static_cast<std::size_t>(pattern.width) +
                     static_cast<std::size_t>(from_x + u)];
        }
      }
    }
  }
  return mosaic;
}

}  // namespace

PatternImage MakeDeadLeaves(std::uint64_t seed) {
  constexpr int kNumLeaves = 900;
  constexpr double kNoise = 1.5;
  RandomBits random(seed);
  std::vector<float> grey(static_cast<std::size_t>(kTextureWidth) * kTextureHeight, 128.0F);
  for (int i = 0; i < kNumLeaves; ++i)
    Paint(RandomLeaf(random), grey);
  std::vector<std::uint8_t> pixels;
  pixels.reserve(grey.size());
  // Three uniform deviates are near enough to a Gaussian one; each has a deviation of a twelfth's root.
  constexpr double kHalfWidth = kNoise;
  for (const float value : grey) {
    const double noise = random.Real(-kHalfWidth, kHalfWidth) +
                         random.Real(-kHalfWidth, kHalfWidth) +
                         random.Real(-kHalfWidth, kHalfWidth);
    pixels.push_back(static_cast<std::uint8_t>(
        std::clamp(static_cast<double>(value) + noise + 0.5, 0.0, 255.0)));
  }
  return {kTextureWidth, kTextureHeight, std::move(pixels)};
}

PatternImage MakeMosaic(const PatternImage& pattern, std::uint64_t seed) {
  RandomBits random(seed);
  PatternImage mosaic;
  mosaic.width = kTextureWidth;
  mosaic.height = kTextureHeight;
  std::visit([&](const auto& pixels) { mosaic.pixels = MosaicOf(pixels, pattern, random); },
             pattern.pixels);
  return mosaic;
}

}  // namespace orvandel::shape
