#include "lines/straight_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "base/trigonometry.h"

namespace orvandel {
namespace {

/// The points of a contour and the neighbours that a point's chord joins.
struct Chord {
  int before;
  int after;
};

/// Distance of point i from the straight line through its neighbours, with a sign. What counts as
/// straight is defined by these very roundings.
double DeviationFromChord(const double* x, const double* y, int i, Chord chord) {
  const auto [a, b] = chord;
  const double chord_angle = ArcTan2(-(y[b] - y[a]), x[b] - x[a]);
  const double point_angle = ArcTan2(-(y[b] - y[i]), x[b] - x[i]);
  const double dx = x[b] - x[i];
  const double dy = y[b] - y[i];
  return Sin(chord_angle - point_angle) * std::sqrt(dx * dx + dy * dy);
}

enum Verdict : std::uint8_t { kBent, kStraight, kUncertain };

/// Compares deviations with the largest allowed one without a trigonometric function, where that is
/// safe.
///
/// With the chord c and the arm p from the point to its far end, the deviation is |c x p| / |c|, so its
/// square is compared through (c x p)^2 and |c|^2. The angles of the trigonometric form carry errors
/// below 2e-15, which move its deviation by less than 2e-15 |p|; the products here move it by less than
/// 1e-15 |p|. While |p| is below 1e4 times the limit, both together stay below 3e-11 of the limit, and a
/// square that is off by more than 1e-9 is on the same side in either form.
class QuickDeviation {
 public:
  explicit QuickDeviation(double limit)
      : limit_squared_(limit * limit), usable_(limit > 1e-100 && limit < 1e100) {}

  bool IsUsable() const { return usable_; }

  Verdict Compare(const double* x, const double* y, int i, Chord chord) const {
    const auto [a, b] = chord;
    const double cx = x[b] - x[a];
    const double cy = y[b] - y[a];
    const double px = x[b] - x[i];
    const double py = y[b] - y[i];
    const double cross = cx * py - cy * px;
    const double square = cross * cross;
    const double bound = (cx * cx + cy * cy) * limit_squared_;
    // False for numbers that are not finite, too.
    const bool safe =
        (px * px + py * py <= 1e8 * limit_squared_) & (bound > 1e-250) & (bound < 1e250);
    const bool bent = safe & (square > bound * (1 + 1e-9));
    const bool straight = safe & (square < bound * (1 - 1e-9));
    return bent ? kBent : straight ? kStraight : kUncertain;
  }

 private:
  double limit_squared_;
  bool usable_;
};

class StraightMarker {
 public:
  StraightMarker(const ContourView& contour, double max_deviation)
      : x_(contour.x.data()),
        y_(contour.y.data()),
        flags_(contour.f.data()),
        max_deviation_(max_deviation),
        quick_(max_deviation) {}

  /// Marks a point whose neighbours may lie anywhere.
  void Mark(int i, Chord chord) const {
    const Verdict verdict = quick_.IsUsable() ? quick_.Compare(x_, y_, i, chord) : kUncertain;
    Write(i, chord, verdict);
  }

  /// Marks points first to end - 1, whose neighbours are the ones `reach` before and after.
  void MarkRange(int first, int end, int reach) const {
    if (!quick_.IsUsable()) {
      for (int i = first; i < end; ++i)
        Write(i, {i - reach, i + reach}, kUncertain);
      return;
    }
    constexpr int kBatch = 64;
    std::array<Verdict, kBatch> verdicts;
    for (int begin = first; begin < end; begin += kBatch) {
      const int count = std::min(kBatch, end - begin);
      for (int k = 0; k < count; ++k) {
        const int i = begin + k;
        verdicts[static_cast<std::size_t>(k)] = quick_.Compare(x_, y_, i, {i - reach, i + reach});
      }
      for (int k = 0; k < count; ++k) {
        const int i = begin + k;
        Write(i, {i - reach, i + reach}, verdicts[static_cast<std::size_t>(k)]);
      }
    }
  }

 private:
  void Write(int i, Chord chord, Verdict verdict) const {
    if (verdict == kUncertain) {
      const double deviation = DeviationFromChord(x_, y_, i, chord);
      flags_[i] = max_deviation_ > std::abs(deviation) ? 1 : 0;
    } else {
      flags_[i] = verdict;
    }
  }

  const double* x_;
  const double* y_;
  std::uint32_t* flags_;
  double max_deviation_;
  QuickDeviation quick_;
};

}  // namespace

bool MarkStraightPoints(const ContourView& contour, const LineOptions& options) {
  const int n = static_cast<int>(contour.Size());
  const int reach = options.neighbour_offset;
  if (reach < 1 || n / 2 < reach || n < 2 * reach + 1) return false;

  // Neighbours wrap two points early, on open contours as well: there the last two points that are
  // examined look ahead to the contour's start.
  const int wrap = n - 2;
  const int first = contour.closed ? 0 : reach;
  const int end = contour.closed ? n : n - reach;
  const int first_unwrapped = std::min(reach, end);
  const int end_unwrapped = std::max(first_unwrapped, wrap - reach);

  const StraightMarker marker(contour, options.max_deviation);
  const auto mark_wrapped = [&](int i) {
    marker.Mark(i, {(i - reach + wrap) % wrap, (i + reach) % wrap});
  };
  for (int i = first; i < first_unwrapped; ++i)
    mark_wrapped(i);
  marker.MarkRange(first_unwrapped, end_unwrapped, reach);
  for (int i = end_unwrapped; i < end; ++i)
    mark_wrapped(i);
  return true;
}

}  // namespace orvandel
