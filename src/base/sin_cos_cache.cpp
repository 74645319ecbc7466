#include "base/sin_cos_cache.h"

#include <cstring>

#include "base/trigonometry.h"

namespace orvandel {

SinCos SinCosCache::Of(double angle) {
  std::uint64_t bits;
  std::memcpy(&bits, &angle, sizeof(bits));
  // The multiplier is 2^64 over the golden ratio, which spreads near keys apart.
  Entry& entry = entries_[bits * 0x9E3779B97F4A7C15u >> (64 - kLogSize)];
  if (entry.angle_bits != bits) entry = {bits, SinCosOf(angle)};
  return entry.value;
}

}  // namespace orvandel
