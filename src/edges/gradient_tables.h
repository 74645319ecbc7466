#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvandel {

/// Direction and magnitude of every gradient that 8-bit data can have. Magnitudes are 0.7 times the
/// gradient's length, so that the largest fits a byte.
struct GradientTables {
  static constexpr std::size_t kDirectionBytes = 0x80000;
  static constexpr std::size_t kMagnitudeBytes = 0x10000;
  static constexpr int kSignedReach = 255;
  static constexpr int kSignedSize = 2 * kSignedReach + 1;

  /// Direction code 0..255 of (gx, gy), both in -127..127: a full turn in 256 steps, 0 along +x and
  /// 64 along +y. At (gy + 127) * 256 + (gx + 127); other entries are not set.
  std::unique_ptr<std::uint8_t[]> direction;

  /// Magnitude of (a, b), both in 0..255, at a * 256 + b.
  std::unique_ptr<std::uint8_t[]> magnitude;

  /// Magnitude of (gx, gy), both in -255..255: row gy + 255, column gx + 255.
  std::unique_ptr<std::unique_ptr<std::uint16_t[]>[]> signed_magnitude;

  std::uint16_t SignedMagnitude(int gx, int gy) const {
    return signed_magnitude[static_cast<std::size_t>(gy + kSignedReach)]
                           [static_cast<std::size_t>(gx + kSignedReach)];
  }
};

/// The tables of the process, built by whichever thread comes first; null when memory is short.
/// They live until `ReleaseGradientTables`.
const GradientTables* AcquireGradientTables();

/// Frees the tables; the next use builds them again. Not while somebody reads them.
void ReleaseGradientTables();

/// Sector of a gradient direction by whole degrees 0..360: 0 along x, 2 along y, 1 and 3 the diagonals.
/// Static, and written by every build of the tables.
const std::array<std::int32_t, 361>& SectorTable();

}  // namespace orvandel
