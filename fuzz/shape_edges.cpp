// Edge points of any image by way of the C interface: what the header promises, the same however the host lays its
// pixels out, and bit for bit what the reference form gives, at any level of vector instructions.

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "fuzz/byte_source.h"
#include "fuzz/host_image.h"
#include "fuzz/painted_scenes.h"
#include "fuzz/require.h"
#include "fuzz/target.h"
#include "orvandel/orvandel.hpp"
#include "platform/simd_level.h"
#include "tests/reference/shape_edge_points.h"

namespace orvandel::fuzz {
namespace {

using Points = std::vector<orv_edge_point>;

HostImage ImageFrom(ByteSource& source) {
  constexpr int kLongestSide = 150;
  const int width = source.InRange(1, kLongestSide);
  const int height = source.InRange(1, kLongestSide);
  const Painting painting(source);
  std::vector<double> greys(static_cast<std::size_t>(width * height), painting.Ground());
  const Sight sight = Sight::From(source, width, height, width / 2.0, height / 2.0);
  Paint(painting, sight, width, height, greys);
  return Developed(greys, width, height, source);
}

bool AreSame(const Points& a, const Points& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

Points PointsOf(const orv_edges* edges) {
  const orv_edge_point* const first = orv_edges_points(edges);
  ORVANDEL_REQUIRE((first == nullptr) == (orv_edges_count(edges) == 0));
  return {first, first + orv_edges_count(edges)};
}

void CheckPoints(const orv_edges* edges, const HostImage& image, double least_strength) {
  const Points points = PointsOf(edges);
  ORVANDEL_REQUIRE(orv_edges_row_begin(edges, -1) == 0);
  ORVANDEL_REQUIRE(orv_edges_row_begin(edges, image.Height()) == points.size());
  constexpr auto kPi = 3.14159274F;  // the float next to it
  for (int y = 0; y < image.Height(); ++y) {
    const std::size_t begin = orv_edges_row_begin(edges, y);
    const std::size_t end = orv_edges_row_begin(edges, y + 1);
    ORVANDEL_REQUIRE(begin <= end && end <= points.size());
    for (std::size_t i = begin; i < end; ++i) {
      const orv_edge_point& p = points[i];
      ORVANDEL_REQUIRE(std::fabs(p.y - static_cast<float>(y)) <= 0.5F);
      ORVANDEL_REQUIRE(i == begin || p.x >= points[i - 1].x);
      ORVANDEL_REQUIRE(p.x >= 2.5F && p.x <= static_cast<float>(image.Width()) - 3.5F);
      ORVANDEL_REQUIRE(p.y >= 2.5F && p.y <= static_cast<float>(image.Height()) - 3.5F);
      ORVANDEL_REQUIRE(p.direction > -kPi && p.direction <= kPi);
      ORVANDEL_REQUIRE(p.strength >= 0 && static_cast<double>(p.strength) >= least_strength);
    }
  }
}

Points ReferencePoints(const orv_image& image, float least_strength) {
  const auto found = [&](const auto* pixels) {
    const ImageViewOf<std::remove_cvref_t<decltype(*pixels)>> view = {
        pixels, image.width, image.height, static_cast<std::ptrdiff_t>(image.stride)};
    Points points;
    for (const shape::edges::EdgePoint& p : reference::FindEdgePoints(view, least_strength))
      points.push_back({p.x, p.y, p.direction, p.strength});
    return points;
  };
  return image.bits_per_pixel == 8 ? found(static_cast<const std::uint8_t*>(image.pixels))
                                   : found(static_cast<const std::uint16_t*>(image.pixels));
}

/// The smallest float that is not below; the largest one for what lies beyond all floats.
float NextFloat(double value) {
  constexpr float kLargest = std::numeric_limits<float>::max();
  if (value >= static_cast<double>(kLargest)) return kLargest;
  const auto nearest = static_cast<float>(value);
  return static_cast<double>(nearest) < value ? std::nextafter(nearest, kLargest) : nearest;
}

bool IsThreshold(double value) {
  return value >= 0 && std::isfinite(value);
}

void Check(ByteSource source) {
  const std::span<const SimdLevel> levels = SupportedSimdLevels();
  ForceSimdLevel(levels[static_cast<std::size_t>(source.Byte()) % levels.size()]);
  orv_edge_options options;
  orv_edge_options_init(&options, sizeof options);
  if (source.Byte() % 2 != 0) options.least_strength = source.Double();
  const HostImage image = ImageFrom(source);
  const orv_image as_c = image.AsC();

  orv_edges* created = nullptr;
  ORVANDEL_REQUIRE(orv_edges_create(&created) == ORV_OK);
  const detail::Owned<orv_edges> edges(created);
  const int status = orv_edges_detect(created, &as_c, &options);
  if (!IsThreshold(options.least_strength)) {
    ORVANDEL_REQUIRE(status == ORV_INVALID_ARGUMENT && orv_edges_count(created) == 0);
    return;
  }
  ORVANDEL_REQUIRE(status == ORV_OK);
  CheckPoints(created, image, options.least_strength);
  const Points points = PointsOf(created);

  ORVANDEL_REQUIRE(AreSame(points, ReferencePoints(as_c, NextFloat(options.least_strength))));

  HostLayout other = image.Layout();
  other.is_bottom_up = !other.is_bottom_up;
  other.gap = 3;
  if (other.bits_per_pixel == 8) other.bits_per_pixel = 16;
  const HostImage copy = image.As(other);
  const orv_image copy_as_c = copy.AsC();
  ORVANDEL_REQUIRE(orv_edges_detect(created, &copy_as_c, &options) == ORV_OK);
  ORVANDEL_REQUIRE(AreSame(PointsOf(created), points));

  if (points.empty()) return;
  options.least_strength = static_cast<double>(points[points.size() / 2].strength);
  ORVANDEL_REQUIRE(orv_edges_detect(created, &as_c, &options) == ORV_OK);
  Points strong;
  for (const orv_edge_point& p : points) {
    if (static_cast<double>(p.strength) >= options.least_strength) strong.push_back(p);
  }
  ORVANDEL_REQUIRE(AreSame(PointsOf(created), strong));
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvandel::fuzz::Check({data, size});
  return 0;
}
