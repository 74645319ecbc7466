#pragma once

#include <cstdint>
#include <vector>

#include "fuzz/byte_source.h"
#include "fuzz/host_image.h"
#include "fuzz/painted_scenes.h"
#include "fuzz/require.h"
#include "orvandel/orvandel.hpp"

namespace orvandel::fuzz {

/// An image to learn from, and what it was painted as.
struct PatternInput {
  Painting painting;
  HostImage image;

  static PatternInput From(ByteSource& source) {
    constexpr int kLongestSide = 80;
    const int width = source.InRange(1, kLongestSide);
    const int height = source.InRange(1, kLongestSide);
    Painting painting(source);
    std::vector<double> greys(static_cast<std::size_t>(width * height), painting.Ground());
    Paint(painting, {}, width, height, greys);
    HostImage image = Developed(greys, width, height, source);
    return {std::move(painting), std::move(image)};
  }
};

/// Without the levels of chance: those are searches of large images, and what can go wrong in them can in small ones.
inline orv_learn_options LearnOptionsWithoutChance() {
  orv_learn_options options;
  orv_learn_options_init(&options, sizeof options);
  options.learns_chance = 0;
  return options;
}

/// The pattern, or null where the status says that there are no edges. No other failure is right.
inline detail::Owned<orv_pattern> LearntOrNull(const HostImage& image,
                                               const orv_learn_options& options) {
  orv_pattern* pattern = nullptr;
  const orv_image as_c = image.AsC();
  const int status = orv_pattern_learn(&as_c, &options, &pattern);
  ORVANDEL_REQUIRE(status == ORV_OK || status == ORV_NO_EDGES);
  ORVANDEL_REQUIRE((pattern != nullptr) == (status == ORV_OK));
  if (status == ORV_NO_EDGES) ORVANDEL_REQUIRE(orv_last_message()[0] != '\0');
  return detail::Owned<orv_pattern>(pattern);
}

inline detail::Owned<orv_finder> NewFinder() {
  orv_finder* finder = nullptr;
  ORVANDEL_REQUIRE(orv_finder_create(&finder) == ORV_OK);
  return detail::Owned<orv_finder>(finder);
}

}  // namespace orvandel::fuzz
