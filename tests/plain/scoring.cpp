#include "tests/plain/scoring.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "contours/crawler_adapter.h"
#include "orvandel/classic/edge_record.h"
#include "verify/probed_neighbour.h"

namespace orvandel::plain {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

/// Directions further out than this are not directions; turning them back would take for ever.
constexpr double kLargestDirection = 1e6;

/// Credit of a match by its distance in pixels. The first entry stands for no search at all and is
/// never used: a match in the centre pixel earns 1.
constexpr std::array<double, 10> kDistanceCredit = {0.99, 0.98, 0.94, 0.9,  0.86,
                                                    0.8,  0.75, 0.7,  0.64, 0.6};

struct PixelIndex {
  int row;
  int column;
};

/// Which neighbour is probed beside each pixel along the normal.
enum class Neighbour {
  kRowBelow,     // always one row off: quick, for the many poses of the search
  kByDirection,  // along the edge: for the final score
};

/// One pose held against one scene. The counting form is a second instance, so that timing the
/// other one does not time the counter.
template <bool kCounted>
class PoseFit {
 public:
  PoseFit(const CPattVerify& rules, const CEdgeImgComplement* edges, const Similarity& pose,
          Point reference, Neighbour neighbour)
      : tolerance_(rules.angleTolerance),
        ignore_polarity_(rules.ignorePolarity != 0),
        radius_(std::clamp(rules.searchRadius, 0, static_cast<int>(kDistanceCredit.size()) - 1)),
        neighbour_(neighbour),
        pose_(pose),
        reference_(reference),
        cosine_(Cos(pose.angle) * pose.scale),
        sine_(Sin(pose.angle) * pose.scale) {
    if (edges == nullptr) return;
    present_ = edges->valid;
    directions_ = edges->g;
    width_ = edges->width;
    height_ = edges->height;
  }

  void AddPoint(double x, double y, double direction) {
    ++num_points_;
    sum_ += Credit(x, y, direction);
  }

  std::int64_t NumPoints() const { return num_points_; }
  std::int64_t NumProbes() const { return num_probes_; }
  double Score() const { return sum_ * 100 / static_cast<double>(num_points_); }

 private:
  double Credit(double x, double y, double direction) {
    const PixelIndex centre = Map(x, y);
    if (!IsAdmissible(centre)) return 0.0;

    // Rows run downwards while directions turn upwards, hence the minus.
    double expected = direction - pose_.angle;
    if (!(std::abs(expected) <= kLargestDirection)) return 0.0;
    while (expected > kTwoPi)
      expected -= kTwoPi;
    while (expected < 0)
      expected += kTwoPi;

    if (Matches(centre, expected)) return 1.0;
    return CreditAlongNormal(centre, expected);
  }

  PixelIndex Map(double x, double y) const {
    const double dx = x - reference_.x;
    const double dy = y - reference_.y;
    return {TruncateToInt32(pose_.y + dx * sine_ + dy * cosine_),
            TruncateToInt32(pose_.x + dx * cosine_ - dy * sine_)};
  }

  /// Far enough from the border that every probe stays inside.
  bool IsAdmissible(PixelIndex p) const {
    return radius_ < p.column && p.column < width_ - radius_ - 1 && radius_ < p.row &&
           p.row < height_ - radius_ - 1;
  }

  double CreditAlongNormal(PixelIndex centre, double expected) {
    const double c = Cos(expected);
    const double s = Sin(expected);
    const NeighbourOffset neighbour = kNeighbourOffsets[NeighbourClass(expected)];
    for (int k = 1; k <= radius_; ++k) {
      // Truncated after half is added: negative steps come out shorter than rounded ones.
      const int dr = static_cast<int>(k * s + 0.5);
      const int dc = static_cast<int>(k * c + 0.5);
      const PixelIndex ahead = {centre.row + dr, centre.column - dc};
      const PixelIndex behind = {centre.row - dr, centre.column + dc};
      if (Matches(ahead, expected) || Matches(behind, expected) ||
          Matches({ahead.row + neighbour.row, ahead.column + neighbour.column}, expected) ||
          Matches({behind.row - neighbour.row, behind.column - neighbour.column}, expected)) {
        return kDistanceCredit[static_cast<std::size_t>(k)];
      }
    }
    return 0.0;
  }

  std::size_t NeighbourClass(double expected) const {
    if (neighbour_ == Neighbour::kRowBelow) return 0;
    const auto degrees = static_cast<std::size_t>(expected * kDegreesPerRadian);
    return static_cast<std::size_t>(kOrientationClass[degrees]);
  }

  bool Matches(PixelIndex p, double expected) {
    const std::size_t cell =
        static_cast<std::size_t>(p.row % 65536) * static_cast<std::size_t>(width_) +
        static_cast<std::size_t>(p.column % 65536);
    if constexpr (kCounted) ++num_probes_;
    if (present_[cell] == 0) return false;

    // Stored directions lie in [-pi, pi), expected ones in [0, 2 pi]: one fold may leave a negative
    // difference, which matches. Scores rest on that.
    double difference = std::abs(expected - directions_[cell]);
    while (difference > kPi)
      difference = kTwoPi - difference;
    return difference < tolerance_ || (ignore_polarity_ && difference > kPi - tolerance_);
  }

  double tolerance_;
  bool ignore_polarity_;
  int radius_;
  Neighbour neighbour_;
  Similarity pose_;
  Point reference_;
  double cosine_;
  double sine_;
  const std::uint8_t* present_ = nullptr;
  const double* directions_ = nullptr;
  int width_ = 0;
  int height_ = 0;

  std::int64_t num_points_ = 0;
  std::int64_t num_probes_ = 0;
  double sum_ = 0.0;
};

/// Makes a fit, lets `add_points` fill it, and adds to the count where one is wanted.
template <typename AddPoints>
double ScoreOf(const CPattVerify& rules, const CEdgeImgComplement* edges, const Similarity& pose,
               Point reference, Neighbour neighbour, ProbeCount* count,
               const AddPoints& add_points) {
  if (count == nullptr) {
    PoseFit<false> fit(rules, edges, pose, reference, neighbour);
    add_points(fit);
    return fit.Score();
  }
  PoseFit<true> fit(rules, edges, pose, reference, neighbour);
  add_points(fit);
  ++count->poses;
  count->points += fit.NumPoints();
  count->probes += fit.NumProbes();
  return fit.Score();
}

}  // namespace

double ScoreAtVerifyPoints(const CPattVerify& verifier, const CEdgeImgComplement* edges,
                           const Similarity& pose, Point reference, ProbeCount* count) {
  return ScoreOf(verifier, edges, pose, reference, Neighbour::kRowBelow, count, [&](auto& fit) {
    for (std::int32_t i = 0; i < verifier.pointCount; ++i)
      fit.AddPoint(verifier.pointX[i], verifier.pointY[i], verifier.pointDir[i]);
  });
}

double ScoreAlongContours(const CPattVerify& rules, void* contours, const CEdgeImgComplement* edges,
                          const Similarity& pose, Point reference, int step, ProbeCount* count) {
  return ScoreOf(rules, edges, pose, reference, Neighbour::kByDirection, count, [&](auto& fit) {
    CCrawler& set = SetOf(contours);
    const std::int64_t stride = std::max(step, 1);
    for (const ContourRecord& contour : Records(set)) {
      for (std::int64_t i = 0; i < contour.size; i += stride) {
        const std::int64_t k = contour.start + i;
        fit.AddPoint(set.x[k], set.y[k], set.g[k]);
      }
    }
  });
}

}  // namespace orvandel::plain
