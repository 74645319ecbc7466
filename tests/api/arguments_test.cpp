// What the C interface says to arguments that make no sense, and to hosts of other versions.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/orvandel.hpp"
#include "tests/api/drawn_part.h"
#include "tests/support/numbers.h"

namespace orvandel::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const std::vector<std::uint8_t>& PartPixels() {
  static const std::vector<std::uint8_t> pixels = [] {
    std::vector<std::uint8_t> drawn(kPatternWidth * kPatternHeight);
    draw_part_8(drawn.data(), kPatternWidth, kPatternHeight, (kPatternWidth - 1) / 2.0,
                (kPatternHeight - 1) / 2.0, 0, 1);
    return drawn;
  }();
  return pixels;
}

orv_image PartImage() {
  orv_image image;
  orv_image_init(&image, PartPixels().data(), kPatternWidth, kPatternHeight, 8);
  return image;
}

/// The last message, if a call failed as a call with wrong arguments does.
std::string Complaint(int status) {
  return status == ORV_INVALID_ARGUMENT ? orv_last_message()
                                        : std::string("status ") + orv_status_text(status);
}

class Arguments : public testing::Test {
 protected:
  Arguments() {
    orv_edges* edges = nullptr;
    orv_finder* finder = nullptr;
    orv_pattern* pattern = nullptr;
    const orv_image image = PartImage();
    orv_learn_options options;
    orv_learn_options_init(&options, sizeof options);
    options.learns_chance = 0;  // takes most of the time, and nothing here depends on it
    EXPECT_EQ(orv_edges_create(&edges), ORV_OK);
    EXPECT_EQ(orv_finder_create(&finder), ORV_OK);
    EXPECT_EQ(orv_pattern_learn(&image, &options, &pattern), ORV_OK);
    edges_.reset(edges);
    finder_.reset(finder);
    pattern_.reset(pattern);
  }

  int Detect(const orv_image& image) { return orv_edges_detect(edges_.get(), &image, nullptr); }
  int Find(const orv_find_options& options) {
    const orv_image scene = PartImage();
    return orv_finder_find(finder_.get(), pattern_.get(), &scene, &options);
  }

  detail::Owned<orv_edges> edges_;
  detail::Owned<orv_finder> finder_;
  detail::Owned<orv_pattern> pattern_;
};

struct BadImage {
  std::string sentence;
  std::function<void(orv_image&)> spoil;
};

TEST_F(Arguments, ImagesThatCannotBeAreRejectedWithASentence) {
  const std::vector<BadImage> bad = {
      {"The image has no pixels: its pointer is null.", [](auto& i) { i.pixels = nullptr; }},
      {"The width and height of the image must be 1 or more.", [](auto& i) { i.width = 0; }},
      {"The width and height of the image must be 1 or more.", [](auto& i) { i.height = -3; }},
      {"The width and height of the image must not exceed 131072.",
       [](auto& i) { i.width = 131073; }},
      {"The image has more than 1073741824 pixels.", [](auto& i) { i.width = i.height = 131072; }},
      {"The bits per pixel of the image must be 8 or 16.", [](auto& i) { i.bits_per_pixel = 12; }},
      {"The stride of the image is smaller than a row.",
       [](auto& i) { i.stride = kPatternWidth - 1; }},
      {"The stride of the image is smaller than a row.", [](auto& i) { i.stride = 0; }},
      {"The stride of the image is smaller than a row.",
       [](auto& i) { i.stride = 1 - kPatternWidth; }},
      {"The stride of the image is too large.",
       [](auto& i) { i.stride = std::numeric_limits<std::int64_t>::min(); }},
      {"The stride of the image is not a whole number of pixels.",
       [](auto& i) {
         i.bits_per_pixel = 16;
         i.stride = 4 * kPatternWidth + 1;
       }},
      {"The pixels of a 16-bit image must lie at an even address.",
       [](auto& i) {
         i.bits_per_pixel = 16;
         i.stride = 2 * kPatternWidth;
         i.pixels = reinterpret_cast<const void*>(std::uintptr_t{4097});
       }},
      {"The struct_size of a struct is not set: it must be sizeof of the struct.",
       [](auto& i) { i.struct_size = 0; }},
      {"The struct_size of a struct is larger than this version of the library knows.",
       [](auto& i) { i.struct_size = sizeof i + 1; }},
  };
  for (const BadImage& expected : bad) {
    orv_image image = PartImage();
    expected.spoil(image);
    EXPECT_EQ(Complaint(Detect(image)), expected.sentence);
    orv_pattern* pattern = pattern_.get();
    EXPECT_EQ(Complaint(orv_pattern_learn(&image, nullptr, &pattern)), expected.sentence);
    EXPECT_EQ(pattern, nullptr);
    EXPECT_EQ(Complaint(orv_finder_find(finder_.get(), pattern_.get(), &image, nullptr)),
              expected.sentence);
  }
}

TEST_F(Arguments, HandlesThatAreNullAreRejectedWithASentence) {
  const orv_image image = PartImage();
  EXPECT_EQ(Complaint(orv_edges_detect(nullptr, &image, nullptr)), "The edges are null.");
  EXPECT_EQ(Complaint(orv_edges_detect(edges_.get(), nullptr, nullptr)), "The image is null.");
  EXPECT_EQ(Complaint(orv_pattern_learn(&image, nullptr, nullptr)),
            "There is no place for the new pattern: the pointer is null.");
  EXPECT_EQ(Complaint(orv_finder_create(nullptr)),
            "There is no place for the new finder: the pointer is null.");
  EXPECT_EQ(Complaint(orv_finder_find(nullptr, pattern_.get(), &image, nullptr)),
            "The finder is null.");
  EXPECT_EQ(Complaint(orv_finder_find(finder_.get(), nullptr, &image, nullptr)),
            "The pattern is null.");
  EXPECT_EQ(Complaint(orv_finder_find(finder_.get(), pattern_.get(), nullptr, nullptr)),
            "The scene is null.");
  EXPECT_EQ(Complaint(orv_pattern_get_info(nullptr, nullptr)), "The pattern is null.");
  EXPECT_EQ(Complaint(orv_pattern_get_info(pattern_.get(), nullptr)),
            "The struct to fill is null.");
  EXPECT_EQ(orv_edges_count(nullptr), 0U);
  EXPECT_EQ(orv_edges_points(nullptr), nullptr);
  EXPECT_EQ(orv_edges_row_begin(nullptr, 5), 0U);
  orv_edges_destroy(nullptr);
  orv_pattern_destroy(nullptr);
  orv_finder_destroy(nullptr);
}

TEST_F(Arguments, EdgeThresholdsThatAreNoneAreRejected) {
  const orv_image image = PartImage();
  orv_edge_options options;
  orv_edge_options_init(&options, sizeof options);
  for (const double bad : {-1.0, -1e-300, kNaN, kInfinity, -kInfinity}) {
    options.least_strength = bad;
    EXPECT_EQ(Complaint(orv_edges_detect(edges_.get(), &image, &options)),
              "The least strength of edges must be 0 or more.");
  }
  options.least_strength = 1e300;
  EXPECT_EQ(orv_edges_detect(edges_.get(), &image, &options), ORV_OK);
  EXPECT_EQ(orv_edges_count(edges_.get()), 0U);
}

TEST_F(Arguments, FindOptionsOutOfRangeAreRejected) {
  const std::vector<std::function<void(orv_find_options&)>> spoilers = {
      [](auto& o) { o.angle_start = kNaN; },
      [](auto& o) { o.angle_start = kInfinity; },
      [](auto& o) { o.angle_extent = kNaN; },
      [](auto& o) { o.angle_extent = -0.1; },
      [](auto& o) { o.angle_extent = kInfinity; },
      [](auto& o) { o.min_scale = 0; },
      [](auto& o) { o.min_scale = kNaN; },
      [](auto& o) { o.max_scale = kNaN; },
      [](auto& o) { o.max_scale = kInfinity; },
      [](auto& o) { o.min_scale = 2.5; },
      [](auto& o) { o.min_score = -0.01; },
      [](auto& o) { o.min_score = 1.01; },
      [](auto& o) { o.min_score = kNaN; },
      [](auto& o) { o.max_overlap = -0.01; },
      [](auto& o) { o.max_overlap = kNaN; },
      [](auto& o) { o.max_overlap = 1.01; },
      [](auto& o) { o.max_matches = -1; },
      [](auto& o) { o.time_budget_us = -1; },
      [](auto& o) { o.num_threads = 0; },
      [](auto& o) { o.num_threads = -4; },
      [](auto& o) { o.polarity = 4; },
      [](auto& o) { o.polarity = -1; },
      [](auto& o) { o.struct_size = 3; },
  };
  for (std::size_t i = 0; i < spoilers.size(); ++i) {
    orv_find_options options;
    orv_find_options_init(&options, sizeof options);
    spoilers[i](options);
    const std::string sentence = Complaint(Find(options));
    EXPECT_EQ(sentence.back(), '.') << i << ": " << sentence;
    EXPECT_EQ(sentence.find("status"), std::string::npos) << i << ": " << sentence;
  }
}

TEST_F(Arguments, LearnOptionsOutOfRangeAreRejected) {
  const orv_image image = PartImage();
  orv_image mask = image;
  orv_learn_options options;
  orv_learn_options_init(&options, sizeof options);
  orv_pattern* pattern = nullptr;
  options.has_origin = 1;
  options.origin_x = kNaN;
  EXPECT_EQ(Complaint(orv_pattern_learn(&image, &options, &pattern)),
            "The origin is not a finite position.");
  options.has_origin = 0;
  options.mask = &mask;
  mask.height -= 1;
  EXPECT_EQ(Complaint(orv_pattern_learn(&image, &options, &pattern)),
            "The mask is not as large as the pattern image.");
  mask = image;
  mask.bits_per_pixel = 16;
  mask.width /= 2;
  EXPECT_EQ(Complaint(orv_pattern_learn(&image, &options, &pattern)),
            "The mask must have 8 bits per pixel.");
}

TEST_F(Arguments, AFailedDetectionLeavesNoPointsOfAnEarlierImage) {
  ASSERT_EQ(Detect(PartImage()), ORV_OK);
  ASSERT_GT(orv_edges_count(edges_.get()), 100U);
  orv_image image = PartImage();
  image.width = 0;
  EXPECT_EQ(Detect(image), ORV_INVALID_ARGUMENT);
  EXPECT_EQ(orv_edges_count(edges_.get()), 0U);
  EXPECT_EQ(orv_edges_points(edges_.get()), nullptr);
  EXPECT_EQ(orv_edges_row_begin(edges_.get(), 50), 0U);
}

TEST_F(Arguments, AFailedSearchLeavesNoResultOfAnEarlierScene) {
  orv_find_options options;
  orv_find_options_init(&options, sizeof options);
  orv_result result;
  result.struct_size = sizeof result;
  orv_match match;
  match.struct_size = sizeof match;
  const std::string none = "The finder has no result: nothing was looked for, or that failed.";
  EXPECT_EQ(Complaint(orv_finder_get_result(finder_.get(), &result)), none);
  ASSERT_EQ(Find(options), ORV_OK);
  EXPECT_EQ(orv_finder_get_result(finder_.get(), &result), ORV_OK);
  ASSERT_EQ(result.num_matches, 1U);
  EXPECT_EQ(orv_finder_get_match(finder_.get(), 0, &match), ORV_OK);
  EXPECT_EQ(Complaint(orv_finder_get_match(finder_.get(), 1, &match)),
            "There is no match of that index.");
  options.min_score = 2;
  EXPECT_EQ(Find(options), ORV_INVALID_ARGUMENT);
  EXPECT_EQ(Complaint(orv_finder_get_result(finder_.get(), &result)), none);
  EXPECT_EQ(Complaint(orv_finder_get_match(finder_.get(), 0, &match)), none);
}

TEST_F(Arguments, AnOlderHostsStructsAreReadAndFilledAsFarAsTheyGo) {
  ASSERT_EQ(Detect(PartImage()), ORV_OK);
  const std::size_t num_points = orv_edges_count(edges_.get());
  const orv_image image = PartImage();
  orv_edge_options options;
  orv_edge_options_init(&options, sizeof options);
  options.struct_size = offsetof(orv_edge_options, least_strength);
  options.least_strength = 1e9;  // beyond what the host says it has
  ASSERT_EQ(orv_edges_detect(edges_.get(), &image, &options), ORV_OK);
  EXPECT_EQ(orv_edges_count(edges_.get()), num_points);

  orv_pattern_info info;
  std::memset(&info, 0x5A, sizeof info);
  info.struct_size = offsetof(orv_pattern_info, origin_x);
  const double before = info.origin_x;
  ASSERT_EQ(orv_pattern_get_info(pattern_.get(), &info), ORV_OK);
  EXPECT_EQ(info.struct_size, offsetof(orv_pattern_info, origin_x));
  EXPECT_EQ(info.width, kPatternWidth);
  EXPECT_EQ(info.height, kPatternHeight);
  EXPECT_EQ(std::memcmp(&info.origin_x, &before, sizeof before), 0);
}

TEST_F(Arguments, AnInitWritesNoFurtherThanTheHostsStruct) {
  orv_find_options options;
  std::memset(&options, 0x5A, sizeof options);
  const std::int32_t before = options.num_threads;
  orv_find_options_init(&options, offsetof(orv_find_options, max_matches));
  EXPECT_EQ(options.struct_size, offsetof(orv_find_options, max_matches));
  EXPECT_EQ(options.time_budget_us, 0);
  EXPECT_EQ(options.num_threads, before);
  orv_find_options_init(nullptr, sizeof options);
  orv_edge_options_init(nullptr, 0);
  orv_learn_options_init(nullptr, 0);
  orv_image_init(nullptr, nullptr, 0, 0, 8);
}

TEST_F(Arguments, EachThreadHasItsOwnMessage) {
  orv_finder_create(nullptr);
  const std::string mine = orv_last_message();
  std::string others_first;
  std::string others_last;
  std::thread other([&] {
    others_first = orv_last_message();
    orv_edges_create(nullptr);
    others_last = orv_last_message();
  });
  other.join();
  EXPECT_EQ(others_first, "");
  EXPECT_EQ(others_last, "There is no place for the new edges: the pointer is null.");
  EXPECT_EQ(orv_last_message(), mine);
}

TEST_F(Arguments, ThreadsMayShareAPattern) {
  const Pattern pattern = Pattern::Learn({PartPixels().data(), kPatternWidth, kPatternHeight});
  const ImageView scene(PartPixels().data(), kPatternWidth, kPatternHeight);
  const Result expected = orvandel::Find(pattern, scene);
  ASSERT_EQ(expected.size(), 1U);
  std::array<Result, 4> results;
  std::vector<std::thread> threads;
  for (Result& result : results)
    threads.emplace_back(
        [&result, copy = pattern, scene] { result = orvandel::Find(copy, scene); });
  for (std::thread& thread : threads)
    thread.join();
  for (const Result& result : results) {
    ASSERT_EQ(result.size(), 1U);
    EXPECT_EQ(result[0].x, expected[0].x);
    EXPECT_EQ(result[0].angle, expected[0].angle);
    EXPECT_EQ(result[0].score, expected[0].score);
  }
}

TEST_F(Arguments, StatusTextsDiffer) {
  EXPECT_STREQ(orv_status_text(ORV_OK), "ok");
  EXPECT_STREQ(orv_status_text(ORV_OUT_OF_MEMORY), "out of memory");
  EXPECT_STREQ(orv_status_text(ORV_NO_EDGES), "no edges");
  EXPECT_STREQ(orv_status_text(ORV_INTERNAL_ERROR), "internal error");
  EXPECT_STREQ(orv_status_text(99), "unknown status");
}

}  // namespace
}  // namespace orvandel::test
