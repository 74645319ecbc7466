/// Orvandel in C++17: learns a geometric pattern from a grey image and finds it in others, at any
/// rotation and a range of scales; and finds sub-pixel edge points.
///
///     const auto part = orvandel::Pattern::Learn(image);
///     for (const orvandel::Match& m : orvandel::Find(part, scene))
///       std::printf("%.3f %.3f  %.4f rad  %.5f\n", m.x, m.y, m.angle, m.scale);
///
/// Header only, over the C interface of orvandel.h, whose conventions hold here too: (0, 0) is the
/// centre of the top-left pixel, x right, y down; angles in radians, positive ones turn clockwise
/// on the screen.
///
/// Errors are exceptions: orvandel::Error with a sentence, std::bad_alloc where memory is short.
/// Finding nothing is none.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "orvandel/orvandel.h"

namespace orvandel {
// A namespace of its own in linked names, so that nothing here meets what the library calls alike
// inside.
inline namespace v1 {

/// What a call was given that it cannot work with, or a pattern image without edges.
class Error : public std::runtime_error {
 public:
  Error(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
  /// Of enum orv_status.
  int Status() const { return status_; }

 private:
  int status_;
};

namespace detail {

/// Turns a status of the C interface into an exception.
inline void Check(int status) {
  if (status == ORV_OK) return;
  if (status == ORV_OUT_OF_MEMORY) throw std::bad_alloc();
  throw Error(status, orv_last_message());
}

struct Destroyer {
  void operator()(orv_edges* edges) const { orv_edges_destroy(edges); }
  void operator()(orv_pattern* pattern) const { orv_pattern_destroy(pattern); }
  void operator()(orv_finder* finder) const { orv_finder_destroy(finder); }
};

template <typename Handle>
using Owned = std::unique_ptr<Handle, Destroyer>;

}  // namespace detail

/// Version of the library that is linked, "major.minor.patch".
inline std::string Version() {
  return orv_version();
}

/// A position in pixels.
struct Point {
  double x = 0;
  double y = 0;
};

/// A grey image of the caller's, of 8 or 16 bits: only read, and only during a call.
class ImageView {
 public:
  /// Rows that follow each other without gaps.
  ImageView(const std::uint8_t* pixels, int width, int height) { Init(pixels, width, height, 8); }
  ImageView(const std::uint16_t* pixels, int width, int height) { Init(pixels, width, height, 16); }

  /// @param stride  bytes from a row to the one below; negative for bottom-up images, whose
  ///                `pixels` are still those of the top row.
  ImageView(const std::uint8_t* pixels, int width, int height, std::ptrdiff_t stride)
      : ImageView(pixels, width, height) {
    image_.stride = stride;
  }
  ImageView(const std::uint16_t* pixels, int width, int height, std::ptrdiff_t stride)
      : ImageView(pixels, width, height) {
    image_.stride = stride;
  }

  const orv_image* AsC() const { return &image_; }

 private:
  void Init(const void* pixels, int width, int height, int bits_per_pixel) {
    orv_image_init(&image_, pixels, width, height, bits_per_pixel);
  }
  orv_image image_;
};

// ---------------------------------------------------------------- edge points

/// x and y in pixels, direction in radians in (-pi, pi] to the brighter side, strength in grey
/// levels per pixel.
using EdgePoint = orv_edge_point;

struct EdgeOptions {
  EdgeOptions() {
    orv_edge_options usual;
    orv_edge_options_init(&usual, sizeof usual);
    least_strength = usual.least_strength;
  }

  double least_strength;  ///< grey levels per pixel, 0 and more; see orv_edge_options
};

/// Points that belong to a detector, until its next detection.
class EdgePointRange {
 public:
  EdgePointRange(const EdgePoint* first, std::size_t size) : first_(first), size_(size) {}
  const EdgePoint* begin() const { return first_; }
  const EdgePoint* end() const { return first_ + size_; }
  const EdgePoint* data() const { return first_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const EdgePoint& operator[](std::size_t i) const { return first_[i]; }

 private:
  const EdgePoint* first_;
  std::size_t size_;
};

/// Finds edge points in image after image, without new memory for those of an earlier size. One
/// thread at a time.
class EdgeDetector {
 public:
  EdgeDetector() {
    orv_edges* edges = nullptr;
    detail::Check(orv_edges_create(&edges));
    edges_.reset(edges);
  }

  /// The points row of pixels by row of pixels, from left to right; valid until the next call.
  EdgePointRange Detect(const ImageView& image, const EdgeOptions& options = {}) {
    orv_edge_options asked;
    orv_edge_options_init(&asked, sizeof asked);
    asked.least_strength = options.least_strength;
    detail::Check(orv_edges_detect(edges_.get(), image.AsC(), &asked));
    return {orv_edges_points(edges_.get()), orv_edges_count(edges_.get())};
  }

  /// Of the last detection: the points of one row of pixels.
  EdgePointRange Row(int y) const {
    const std::size_t begin = orv_edges_row_begin(edges_.get(), y);
    const std::size_t end = y < 0 ? begin : orv_edges_row_begin(edges_.get(), y + 1);
    if (begin == end) return {nullptr, 0};
    return {orv_edges_points(edges_.get()) + begin, end - begin};
  }

 private:
  detail::Owned<orv_edges> edges_;
};

/// The edge points of one image.
inline std::vector<EdgePoint> Edges(const ImageView& image, const EdgeOptions& options = {}) {
  EdgeDetector detector;
  const EdgePointRange points = detector.Detect(image, options);
  return {points.begin(), points.end()};
}

// ---------------------------------------------------------------- patterns

struct LearnOptions {
  LearnOptions() {
    orv_learn_options usual;
    orv_learn_options_init(&usual, sizeof usual);
    learns_chance = usual.learns_chance != 0;
  }

  std::optional<Point> origin;    ///< pixels of the pattern image; its centre when not set
  std::optional<ImageView> mask;  ///< 8 bits, as large as the image: not 0 where the pattern is
  bool learns_chance;             ///< see orv_learn_options
};

/// A learnt pattern: never changes, is cheap to copy, and may be used by many threads at once.
class Pattern {
 public:
  /// The pixels are copied. Throws an Error of status ORV_NO_EDGES where there are too few edges to
  /// be found by.
  static Pattern Learn(const ImageView& image, const LearnOptions& options = {}) {
    orv_learn_options asked;
    orv_learn_options_init(&asked, sizeof asked);
    if (options.origin) {
      asked.has_origin = 1;
      asked.origin_x = options.origin->x;
      asked.origin_y = options.origin->y;
    }
    asked.learns_chance = options.learns_chance ? 1 : 0;
    if (options.mask) asked.mask = options.mask->AsC();
    orv_pattern* pattern = nullptr;
    detail::Check(orv_pattern_learn(image.AsC(), &asked, &pattern));
    return Pattern(pattern);
  }

  /// Size of the image that it was learnt from, pixels.
  int Width() const { return info_.width; }
  int Height() const { return info_.height; }
  /// The point whose place matches tell, pixels of that image.
  Point Origin() const { return {info_.origin_x, info_.origin_y}; }
  /// At full resolution.
  int NumEdgePoints() const { return info_.num_edge_points; }

  const orv_pattern* AsC() const { return pattern_.get(); }

 private:
  explicit Pattern(orv_pattern* pattern) : pattern_(pattern, detail::Destroyer()) {
    info_.struct_size = sizeof info_;
    detail::Check(orv_pattern_get_info(pattern, &info_));
  }

  std::shared_ptr<const orv_pattern> pattern_;
  orv_pattern_info info_;
};

// ---------------------------------------------------------------- finding

/// Which way round the contrast may be, compared with the learnt image.
enum class Polarity : std::int32_t {
  kSame = ORV_POLARITY_SAME,
  kReversed = ORV_POLARITY_REVERSED,  ///< bright and dark exchanged all over
  kEither = ORV_POLARITY_EITHER,      ///< one of the two
  kMixed = ORV_POLARITY_MIXED,        ///< each stretch of the outline on its own
};

/// See orv_find_options for the ranges; the defaults come from the library.
struct FindOptions {
  FindOptions() {
    orv_find_options usual;
    orv_find_options_init(&usual, sizeof usual);
    angle_start = usual.angle_start;
    angle_extent = usual.angle_extent;
    min_scale = usual.min_scale;
    max_scale = usual.max_scale;
    min_score = usual.min_score;
    max_overlap = usual.max_overlap;
    time_budget_us = usual.time_budget_us;
    max_matches = usual.max_matches;
    polarity = static_cast<Polarity>(usual.polarity);
    num_threads = usual.num_threads;
  }

  double angle_start;   ///< radians
  double angle_extent;  ///< radians from the start on, clockwise
  double min_scale;     ///< above 0
  double max_scale;     ///< the same as min_scale fixes the scale
  double min_score;     ///< 0 to 1; a match of just that score is reported
  double max_overlap;   ///< share of the smaller one's area that two matches may have in common
  std::int64_t time_budget_us;  ///< microseconds; 0 for no limit
  int max_matches;              ///< 0 for all
  Polarity polarity;
  int num_threads;  ///< 1 and more; the results have the same bits with any number
};

/// Maps pixels of one image to those of another: `scene_from_pattern * p_in_pattern` is a point in
/// the scene.
struct Affine {
  double a = 1, b = 0, c = 0;  ///< x = a u + b v + c
  double d = 0, e = 1, f = 0;  ///< y = d u + e v + f

  friend Point operator*(const Affine& map, Point p) {
    return {map.a * p.x + map.b * p.y + map.c, map.d * p.x + map.e * p.y + map.f};
  }
};

/// An instance of a pattern in a scene.
struct Match {
  double x = 0;  ///< where the pattern's origin lies, scene pixels
  double y = 0;
  double angle = 0;           ///< radians in (-pi, pi]
  double scale = 1;           ///< scene pixels per pattern pixel
  Affine scene_from_pattern;  ///< from pixels of the pattern image
  /// Of (x, y, angle, scale), row by row: pixels, radians, 1. What was given, not found, has the
  /// variance 0; an angle that the pattern does not tell, as a full circle, an infinite one.
  std::array<double, 16> covariance = {};
  double score = 0;          ///< 0 to 1
  double coverage = 0;       ///< share of the visible edge points that the scene has
  double clutter = 0;        ///< edges inside the outline that the pattern has not, per edge point
  double fit_error = 0;      ///< RMS distance of the edges, scene pixels
  double contrast = 0;       ///< strength of the edges relative to the learnt ones
  double share_outside = 0;  ///< of the edge points, beyond the scene's border
  bool is_reversed = false;  ///< most edges have bright and dark exchanged
};

/// Microseconds.
struct StageTimes {
  double pyramid = 0;
  double response_maps = 0;
  double coarse_search = 0;
  double tracking = 0;
  double refinement = 0;
  double scoring = 0;
  double total = 0;
};

/// What a search came to; iterates over its matches, the best one first.
struct Result {
  std::vector<Match> matches;
  bool timed_out = false;  ///< the budget ended the search; the matches are those found until then
  StageTimes times_us;

  std::vector<Match>::const_iterator begin() const { return matches.begin(); }
  std::vector<Match>::const_iterator end() const { return matches.end(); }
  std::size_t size() const { return matches.size(); }
  bool empty() const { return matches.empty(); }
  const Match& operator[](std::size_t i) const { return matches[i]; }
};

/// Looks for patterns in scene after scene and keeps the working storage in between. One thread at
/// a time.
class Finder {
 public:
  Finder() {
    orv_finder* finder = nullptr;
    detail::Check(orv_finder_create(&finder));
    finder_.reset(finder);
  }

  Result Find(const Pattern& pattern, const ImageView& scene, const FindOptions& options = {}) {
    const orv_find_options asked = AsC(options);
    detail::Check(orv_finder_find(finder_.get(), pattern.AsC(), scene.AsC(), &asked));
    return LastResult();
  }

 private:
  static orv_find_options AsC(const FindOptions& options) {
    orv_find_options asked;
    orv_find_options_init(&asked, sizeof asked);
    asked.angle_start = options.angle_start;
    asked.angle_extent = options.angle_extent;
    asked.min_scale = options.min_scale;
    asked.max_scale = options.max_scale;
    asked.min_score = options.min_score;
    asked.max_overlap = options.max_overlap;
    asked.time_budget_us = options.time_budget_us;
    asked.max_matches = options.max_matches;
    asked.polarity = static_cast<std::int32_t>(options.polarity);
    asked.num_threads = options.num_threads;
    return asked;
  }

  Result LastResult() const {
    orv_result found = {};
    found.struct_size = sizeof found;
    detail::Check(orv_finder_get_result(finder_.get(), &found));
    Result result;
    result.timed_out = found.timed_out != 0;
    result.times_us = {found.pyramid_us,  found.response_maps_us, found.coarse_search_us,
                       found.tracking_us, found.refinement_us,    found.scoring_us,
                       found.total_us};
    result.matches.reserve(found.num_matches);
    for (std::size_t i = 0; i < found.num_matches; ++i)
      result.matches.push_back(MatchAt(i));
    return result;
  }

  Match MatchAt(std::size_t index) const {
    orv_match found = {};
    found.struct_size = sizeof found;
    detail::Check(orv_finder_get_match(finder_.get(), index, &found));
    Match match;
    match.x = found.x;
    match.y = found.y;
    match.angle = found.angle;
    match.scale = found.scale;
    const double* const map = found.scene_from_pattern;
    match.scene_from_pattern = {map[0], map[1], map[2], map[3], map[4], map[5]};
    for (std::size_t i = 0; i < match.covariance.size(); ++i)
      match.covariance[i] = found.covariance[i];
    match.score = found.score;
    match.coverage = found.coverage;
    match.clutter = found.clutter;
    match.fit_error = found.fit_error;
    match.contrast = found.contrast;
    match.share_outside = found.share_outside;
    match.is_reversed = found.is_reversed != 0;
    return match;
  }

  detail::Owned<orv_finder> finder_;
};

/// Looks for a pattern in one scene. A Finder saves the allocations when there are many.
inline Result Find(const Pattern& pattern, const ImageView& scene,
                   const FindOptions& options = {}) {
  return Finder().Find(pattern, scene, options);
}

}  // namespace v1
}  // namespace orvandel
