#include "shape/refinement/rounding_runs.h"

namespace orvandel::shape {
namespace {

/// Shorter runs of equal values come about by chance where an image is smooth.
constexpr int kLeastRun = 6;

/// Gives the pixels of long runs along a line their first one, and their length.
void FindRunsAlong(const FloatImage& image, std::int32_t first, std::int32_t step, int count,
                   std::vector<std::int32_t>& heads, std::vector<std::int32_t>& lengths) {
  const auto at = [&](int k) { return static_cast<std::size_t>(first + k * step); };
  for (int begin = 0; begin < count;) {
    int end = begin + 1;
    while (end < count && image.grey[at(end)] == image.grey[at(begin)])
      ++end;
    const int length = end - begin;
    for (int k = begin; k < end && length >= kLeastRun; ++k) {
      if (lengths[at(k)] >= length) continue;  // the other direction has a longer one
      heads[at(k)] = static_cast<std::int32_t>(at(begin));
      lengths[at(k)] = length;
    }
    begin = end;
  }
}

}  // namespace

std::vector<std::int32_t> FindRoundingRuns(const FloatImage& image) {
  std::vector<std::int32_t> heads(image.grey.size());
  for (std::size_t i = 0; i < heads.size(); ++i)
    heads[i] = static_cast<std::int32_t>(i);
  std::vector<std::int32_t> lengths(image.grey.size(), 1);
  for (int y = 0; y < image.height; ++y)
    FindRunsAlong(image, y * image.width, 1, image.width, heads, lengths);
  for (int x = 0; x < image.width; ++x)
    FindRunsAlong(image, x, image.width, image.height, heads, lengths);
  return heads;
}

}  // namespace orvandel::shape
