#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "contours/heading_kernels.h"
#include "orvandel/classic/crawler.h"

namespace orvandel {

/// A point of an evenly spaced contour.
struct WalkedPoint {
  double x;
  double y;
  /// The input point that the way to it leads to; for the first and the last point, which are input
  /// points themselves, the complement of its index.
  std::int32_t source;
};

/// Where the points of one contour are among those of others.
struct WalkedStretch {
  const std::vector<WalkedPoint>* trail = nullptr;
  std::size_t first = 0;
  std::size_t count = 0;
};

/// Contours walked along in even steps from input point to input point, several at a time: a step starts
/// where the one before ended, so a contour alone would wait for every sine and cosine.
class ContourWalks {
 public:
  /// Throws std::bad_alloc where the points are too many for memory or for 32 bits.
  ///
  /// @param contours  records of the set.
  ContourWalks(const CCrawler& set, std::span<const ContourRecord> contours);
  ContourWalks(const ContourWalks&) = delete;
  ContourWalks& operator=(const ContourWalks&) = delete;

  /// The points of the i-th contour.
  std::span<const WalkedPoint> Points(std::size_t i) const;

  /// Of all contours together.
  std::int64_t NumPoints() const;

 private:
  std::array<std::vector<WalkedPoint>, kHeadingBatch> trails_;
  std::vector<WalkedStretch> stretches_;
};

}  // namespace orvandel
