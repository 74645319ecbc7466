// Learning from any image by way of the C interface: a pattern or "no edges", with what is known of it, and the same
// pattern however the host lays its pixels out.

#include <cmath>
#include <optional>

#include "fuzz/byte_source.h"
#include "fuzz/host_image.h"
#include "fuzz/painted_scenes.h"
#include "fuzz/require.h"
#include "fuzz/shape_matches.h"
#include "fuzz/shape_patterns.h"
#include "fuzz/target.h"
#include "orvandel/orvandel.hpp"
#include "platform/simd_level.h"

namespace orvandel::fuzz {
namespace {

/// A rectangle or everything or nothing.
HostImage MaskFrom(ByteSource& source, const HostImage& image) {
  HostLayout layout = LayoutFrom(source);
  layout.bits_per_pixel = 8;
  HostImage mask(image.Width(), image.Height(), layout);
  const int left = source.Byte();
  const int top = source.Byte();
  const int right = left + source.Byte();
  const int bottom = top + source.Byte();
  const int inside = source.Byte();
  for (int y = 0; y < mask.Height(); ++y) {
    for (int x = 0; x < mask.Width(); ++x)
      mask.Set(x, y, x >= left && x < right && y >= top && y < bottom ? inside : 0);
  }
  return mask;
}

orv_pattern_info InfoOf(const orv_pattern* pattern) {
  orv_pattern_info info;
  info.struct_size = sizeof info;
  ORVANDEL_REQUIRE(orv_pattern_get_info(pattern, &info) == ORV_OK);
  return info;
}

void CheckInfo(const orv_pattern_info& info, const HostImage& image,
               const orv_learn_options& options) {
  ORVANDEL_REQUIRE(info.width == image.Width() && info.height == image.Height());
  const double x = options.has_origin != 0 ? options.origin_x : (image.Width() - 1) / 2.0;
  const double y = options.has_origin != 0 ? options.origin_y : (image.Height() - 1) / 2.0;
  // It is kept relative to the image's centre.
  const double rounding = 1e-15 * (image.Width() + image.Height());
  ORVANDEL_REQUIRE(std::fabs(info.origin_x - x) <= rounding + 1e-15 * std::fabs(x));
  ORVANDEL_REQUIRE(std::fabs(info.origin_y - y) <= rounding + 1e-15 * std::fabs(y));
  ORVANDEL_REQUIRE(info.num_edge_points > 0);
}

/// What the pattern finds in its own image.
Matches FoundAtHome(const orv_pattern* pattern, const HostImage& image) {
  orv_find_options options;
  orv_find_options_init(&options, sizeof options);
  options.min_score = 0;
  options.max_matches = 3;
  options.min_scale = 0.9;
  options.max_scale = 1.1;
  const detail::Owned<orv_finder> finder = NewFinder();
  const orv_image scene = image.AsC();
  ORVANDEL_REQUIRE(orv_finder_find(finder.get(), pattern, &scene, &options) == ORV_OK);
  const Matches matches = MatchesOf(finder.get());
  CheckMatches(matches, options, InfoOf(pattern));
  return matches;
}

/// The image without gaps, from the top; 8 bits stay 8.
HostImage Plain(const HostImage& image) {
  return image.As({image.Layout().bits_per_pixel, 0, false});
}

void Check(ByteSource source) {
  const std::span<const SimdLevel> levels = SupportedSimdLevels();
  ForceSimdLevel(levels[static_cast<std::size_t>(source.Byte()) % levels.size()]);
  orv_learn_options options = LearnOptionsWithoutChance();
  options.has_origin = source.Byte() % 2;
  if (options.has_origin != 0) {
    options.origin_x = source.Double();
    options.origin_y = source.Double();
  }
  const bool has_mask = source.Byte() % 2 != 0;
  const HostImage image = PatternInput::From(source).image;
  const HostImage mask = MaskFrom(source, image);
  const orv_image mask_as_c = mask.AsC();
  if (has_mask) options.mask = &mask_as_c;

  if (!std::isfinite(options.origin_x) || !std::isfinite(options.origin_y)) {
    orv_pattern* pattern = nullptr;
    const orv_image as_c = image.AsC();
    ORVANDEL_REQUIRE(orv_pattern_learn(&as_c, &options, &pattern) == ORV_INVALID_ARGUMENT);
    ORVANDEL_REQUIRE(pattern == nullptr);
    return;
  }
  const detail::Owned<orv_pattern> pattern = LearntOrNull(image, options);
  const HostImage plain_mask = Plain(mask);
  const orv_image plain_mask_as_c = plain_mask.AsC();
  if (has_mask) options.mask = &plain_mask_as_c;
  ForceSimdLevel(levels.front());
  const detail::Owned<orv_pattern> same = LearntOrNull(Plain(image), options);
  ORVANDEL_REQUIRE((pattern == nullptr) == (same == nullptr));
  if (!pattern) return;
  CheckInfo(InfoOf(pattern.get()), image, options);
  ORVANDEL_REQUIRE(InfoOf(pattern.get()).num_edge_points == InfoOf(same.get()).num_edge_points);
  // How sure a place is that lies so far away is more than a double holds.
  constexpr double kFarthest = 1e9;
  if (std::fabs(options.origin_x) > kFarthest || std::fabs(options.origin_y) > kFarthest) return;
  ORVANDEL_REQUIRE(
      test::AreSameMatches(FoundAtHome(pattern.get(), image), FoundAtHome(same.get(), image)));
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvandel::fuzz::Check({data, size});
  return 0;
}
