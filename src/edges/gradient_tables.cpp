#include "edges/gradient_tables.h"

#include <atomic>
#include <cmath>
#include <mutex>
#include <new>

#include "base/rounding.h"
#include "base/trigonometry.h"

namespace orvandel {
namespace {

std::mutex build_mutex;
std::unique_ptr<GradientTables> shared_tables;      // guarded by build_mutex
std::atomic<const GradientTables*> built{nullptr};  // what readers see
std::array<std::int32_t, 361> sectors{};            // guarded by build_mutex

std::uint8_t DirectionCode(int gx, int gy) {
  const double code = ArcTan2(gy, gx) * 128 / kPi;
  return static_cast<std::uint8_t>(static_cast<int>(std::floor(gy >= 0 ? code : code + 256)));
}

int ScaledMagnitude(int a, int b) {
  return static_cast<int>(0.7 * std::sqrt(a * a + b * b));
}

std::unique_ptr<std::uint8_t[]> BuildDirections() {
  std::unique_ptr<std::uint8_t[]> table(new std::uint8_t[GradientTables::kDirectionBytes]);
  for (int gy = -127; gy <= 127; ++gy) {
    for (int gx = -127; gx <= 127; ++gx) {
      table[static_cast<std::size_t>((gy + 127) * 256 + (gx + 127))] = DirectionCode(gx, gy);
    }
  }
  return table;
}

void BuildSectors() {
  for (int degrees = 0; degrees <= 360; ++degrees) {
    // Sectors are 45 degrees wide and centred on multiples of 45, rounding half a degree upwards.
    sectors[static_cast<std::size_t>(degrees)] = (degrees + 22) / 45 % 4;
  }
}

std::unique_ptr<std::uint8_t[]> BuildMagnitudes() {
  std::unique_ptr<std::uint8_t[]> table(new std::uint8_t[GradientTables::kMagnitudeBytes]);
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      table[static_cast<std::size_t>(a * 256 + b)] =
          static_cast<std::uint8_t>(ScaledMagnitude(a, b));
    }
  }
  return table;
}

std::unique_ptr<std::unique_ptr<std::uint16_t[]>[]> BuildSignedMagnitudes() {
  constexpr int kReach = GradientTables::kSignedReach;
  auto rows = std::make_unique<std::unique_ptr<std::uint16_t[]>[]>(GradientTables::kSignedSize);
  for (int gy = -kReach; gy <= kReach; ++gy) {
    auto& row = rows[static_cast<std::size_t>(gy + kReach)];
    row = std::make_unique<std::uint16_t[]>(GradientTables::kSignedSize);
    for (int gx = -kReach; gx <= kReach; ++gx) {
      row[static_cast<std::size_t>(gx + kReach)] =
          static_cast<std::uint16_t>(ScaledMagnitude(gx, gy));
    }
  }
  return rows;
}

std::unique_ptr<GradientTables> BuildTables() {
  auto built_tables = std::make_unique<GradientTables>();
  built_tables->direction = BuildDirections();
  BuildSectors();
  built_tables->magnitude = BuildMagnitudes();
  built_tables->signed_magnitude = BuildSignedMagnitudes();
  return built_tables;
}

}  // namespace

const GradientTables* AcquireGradientTables() {
  if (const GradientTables* ready = built.load(std::memory_order_acquire)) return ready;

  const std::scoped_lock lock(build_mutex);
  if (!shared_tables) {
    try {
      shared_tables = BuildTables();
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
    built.store(shared_tables.get(), std::memory_order_release);
  }
  return shared_tables.get();
}

void ReleaseGradientTables() {
  const std::scoped_lock lock(build_mutex);
  built.store(nullptr, std::memory_order_release);
  shared_tables.reset();
}

const std::array<std::int32_t, 361>& SectorTable() {
  return sectors;
}

}  // namespace orvandel
