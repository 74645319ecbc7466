#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvandel/classic/imgutil_i.h"

namespace orvandel::test {

/// An image as a host may make it over pixels of its own: rows in allocations of their own, from
/// the bottom up, so that a step over the end of a row is found by the sanitizers.
class HostImage {
 public:
  HostImage(int width, int height)
      : rows_(static_cast<std::size_t>(height),
              std::vector<std::uint8_t>(static_cast<std::size_t>(width))) {
    for (auto row = rows_.rbegin(); row != rows_.rend(); ++row)
      table_.push_back(row->data());
    image_ = {1, width, height, table_.data()};
  }
  HostImage(const HostImage&) = delete;
  HostImage& operator=(const HostImage&) = delete;

  tImage* get() { return &image_; }
  std::uint8_t& At(int x, int y) { return image_.row[y][x]; }

 private:
  std::vector<std::vector<std::uint8_t>> rows_;
  std::vector<std::uint8_t*> table_;
  tImage image_;
};

}  // namespace orvandel::test
