// Finding a painted pattern in painted scenes by way of the C interface, with any options: what the header promises of
// matches, and the same bits from a used finder, any number of threads and any level of vector instructions.

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

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

/// Numbers that make sense; for one input in eight, any numbers.
orv_find_options OptionsFrom(ByteSource& source) {
  orv_find_options options;
  orv_find_options_init(&options, sizeof options);
  const int kind = source.Byte();
  if (kind % 2 != 0) {
    options.angle_start = source.SignedByte() / 20.0;
    options.angle_extent = source.Byte() / 36.0;
  }
  if (kind / 2 % 2 != 0) {
    options.min_scale = (1 + source.Byte()) / 96.0;
    options.max_scale = options.min_scale * (1 + source.Byte() / 64.0);
  }
  options.min_score = kind / 4 % 2 != 0 ? source.Byte() / 255.0 : 0;
  if (kind / 8 % 2 != 0) options.max_overlap = source.Byte() / 255.0;
  options.max_matches = kind / 16 % 2 != 0 ? source.Byte() % 12 : 2;
  options.polarity = source.Byte() % 4;
  if (kind / 32 % 4 == 3) options.time_budget_us = 1 + 16 * source.Byte();
  if (source.Byte() >= 32) return options;
  // Any numbers.
  options.angle_start = source.Double();
  options.angle_extent = source.Double();
  options.min_scale = source.Double();
  options.max_scale = source.Double();
  options.min_score = source.Double();
  options.max_overlap = source.Double();
  options.max_matches = source.SignedByte();
  options.polarity = source.Byte() < 128 ? options.polarity : source.Int32();
  options.num_threads = source.Byte() < 128 ? 1 : source.SignedByte();
  if (options.num_threads > 4) options.num_threads = 4;
  options.time_budget_us = source.Byte() < 128 ? 0 : source.Int32();
  return options;
}

/// As orvandel.h has the ranges.
bool IsInRange(const orv_find_options& o) {
  return std::isfinite(o.angle_start) && std::isfinite(o.angle_extent) && o.angle_extent >= 0 &&
         o.min_scale > 0 && std::isfinite(o.max_scale) && o.max_scale >= o.min_scale &&
         IsShare(o.min_score) && IsShare(o.max_overlap) && o.time_budget_us >= 0 &&
         o.max_matches >= 0 && o.polarity >= ORV_POLARITY_SAME &&
         o.polarity <= ORV_POLARITY_MIXED && o.num_threads >= 1;
}

/// The pattern some times over, and something else.
HostImage SceneFrom(ByteSource& source, const PatternInput& pattern) {
  constexpr int kLongestSide = 140;
  const int width = source.InRange(1, kLongestSide);
  const int height = source.InRange(1, kLongestSide);
  const int num_parts = source.Byte() % 4;
  std::vector<double> greys(static_cast<std::size_t>(width * height), source.Byte());
  for (int i = 0; i < num_parts; ++i) {
    const Sight sight = Sight::From(source, width, height, (pattern.image.Width() - 1) / 2.0,
                                    (pattern.image.Height() - 1) / 2.0);
    Paint(pattern.painting, sight, width, height, greys);
  }
  Paint(Painting(source), {}, width, height, greys);
  return Developed(greys, width, height, source);
}

int Find(orv_finder* finder, const orv_pattern* pattern, const HostImage& scene,
         const orv_find_options& options) {
  const orv_image as_c = scene.AsC();
  return orv_finder_find(finder, pattern, &as_c, &options);
}

/// A finder that has served another scene, with more threads and plain vector instructions.
Matches MatchesOfAnother(const orv_pattern* pattern, const HostImage& scene,
                         const HostImage& other_scene, orv_find_options options) {
  const detail::Owned<orv_finder> finder = NewFinder();
  ForceSimdLevel(SupportedSimdLevels().front());
  orv_find_options usual;
  orv_find_options_init(&usual, sizeof usual);
  ORVANDEL_REQUIRE(Find(finder.get(), pattern, other_scene, usual) == ORV_OK);
  options.num_threads = options.num_threads == 1 ? 3 : 1;
  const HostImage plain = scene.As({scene.Layout().bits_per_pixel, 0, false});
  ORVANDEL_REQUIRE(Find(finder.get(), pattern, plain, options) == ORV_OK);
  return MatchesOf(finder.get());
}

void Check(ByteSource source) {
  const std::span<const SimdLevel> levels = SupportedSimdLevels();
  ForceSimdLevel(levels[static_cast<std::size_t>(source.Byte()) % levels.size()]);
  const orv_find_options options = OptionsFrom(source);
  const PatternInput input = PatternInput::From(source);
  const detail::Owned<orv_pattern> pattern = LearntOrNull(input.image, LearnOptionsWithoutChance());
  if (!pattern) return;
  const HostImage scene = SceneFrom(source, input);
  const detail::Owned<orv_finder> finder = NewFinder();
  const int status = Find(finder.get(), pattern.get(), scene, options);
  ORVANDEL_REQUIRE(status == (IsInRange(options) ? ORV_OK : ORV_INVALID_ARGUMENT));
  if (status != ORV_OK) return;

  orv_pattern_info info;
  info.struct_size = sizeof info;
  ORVANDEL_REQUIRE(orv_pattern_get_info(pattern.get(), &info) == ORV_OK);
  const Matches matches = MatchesOf(finder.get());
  CheckMatches(matches, options, info);
  const orv_result result = ResultOf(finder.get());
  if (options.time_budget_us > 0) return;  // what is found in time is chance
  ORVANDEL_REQUIRE(result.timed_out == 0);
  ORVANDEL_REQUIRE(
      test::AreSameMatches(MatchesOfAnother(pattern.get(), scene, input.image, options), matches));

  if (matches.empty()) return;
  orv_find_options at_threshold = options;
  at_threshold.min_score = matches.front().score;
  ORVANDEL_REQUIRE(Find(finder.get(), pattern.get(), scene, at_threshold) == ORV_OK);
  const Matches best = MatchesOf(finder.get());
  ORVANDEL_REQUIRE(!best.empty() && test::AreSameMatches({best.front()}, {matches.front()}));
  at_threshold.min_score = std::nextafter(matches.front().score, 2.0);
  if (at_threshold.min_score > 1) return;
  ORVANDEL_REQUIRE(Find(finder.get(), pattern.get(), scene, at_threshold) == ORV_OK);
  ORVANDEL_REQUIRE(ResultOf(finder.get()).num_matches == 0);
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvandel::fuzz::Check({data, size});
  return 0;
}
