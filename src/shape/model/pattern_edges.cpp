#include "shape/model/pattern_edges.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "image/gradients.h"

namespace orvandel::shape {
namespace {

/// Share of the typical edge strength that a stretch of edge must reach somewhere, and half of it
/// everywhere. The typical strength is the median weighted by strength itself: in a flat pattern with grain the
/// many weak edges would otherwise decide.
constexpr double kHighShare = 0.25;
constexpr double kLowShare = 0.5 * kHighShare;

/// No edge is weaker than this many deviations of a gradient's noise ...
constexpr double kNoiseDeviations = 4.0;
/// ... or than this many grey levels a pixel.
constexpr double kLeastSlope = 0.6;

/// Means of `values` over consecutive stretches of length `factor`, the first of which begins at `begin`
/// (0 is the left border of the first value).
void MeanAlong(const std::vector<double>& sums, double begin, double factor, int count, int step,
               float* means) {
  const auto integral = [&sums](double t) {
    const double whole = std::floor(t);
    const auto i = std::min(static_cast<std::size_t>(std::max(whole, 0.0)), sums.size() - 2);
    return sums[i] + (t - static_cast<double>(i)) * (sums[i + 1] - sums[i]);
  };
  double left = integral(begin);
  for (int k = 0; k < count; ++k) {
    const double right = integral(begin + factor * (k + 1));
    means[static_cast<std::ptrdiff_t>(k) * step] = static_cast<float>((right - left) / factor);
    left = right;
  }
}

/// Grey values in the units of a pyramid of the same image.
std::vector<float> UnitsOf(const PatternImage& pattern) {
  const GreyPlane plane = ToPlane(UnitImage(pattern.View()));
  return {plane.pixels.begin(), plane.pixels.end()};
}

/// The gradient at a pixel, in the units of a gradient plane.
Point SobelAt(const FactorImage& image, int x, int y) {
  const double falling = image.At(x + 1, y + 1) - image.At(x - 1, y - 1);
  const double rising = image.At(x + 1, y - 1) - image.At(x - 1, y + 1);
  const double across = image.At(x + 1, y) - image.At(x - 1, y);
  const double down = image.At(x, y + 1) - image.At(x, y - 1);
  return {falling + rising + 2.0 * across, falling - rising + 2.0 * down};
}

/// Gradients between pixels; 0 in the outermost rows and columns.
class GradientField {
 public:
  explicit GradientField(const FactorImage& image)
      : width_(image.width),
        height_(image.height),
        gradients_(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height)) {
    for (int y = 1; y + 1 < height_; ++y) {
      for (int x = 1; x + 1 < width_; ++x)
        gradients_[Index(x, y)] = SobelAt(image, x, y);
    }
  }

  int Width() const { return width_; }
  int Height() const { return height_; }
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }
  Point At(int x, int y) const { return gradients_[Index(x, y)]; }

  /// Bilinear; the position lies within the outermost pixels' centres.
  Point Between(Point at) const {
    const int x = std::clamp(static_cast<int>(at.x), 0, width_ - 2);
    const int y = std::clamp(static_cast<int>(at.y), 0, height_ - 2);
    const double right = at.x - x;
    const double lower = at.y - y;
    const Point top = (1.0 - right) * At(x, y) + right * At(x + 1, y);
    const Point bottom = (1.0 - right) * At(x, y + 1) + right * At(x + 1, y + 1);
    return (1.0 - lower) * top + lower * bottom;
  }

 private:
  int width_;
  int height_;
  std::vector<Point> gradients_;
};

/// An edge point in pixels of the factor's image.
struct Peak {
  int x = 0;
  int y = 0;
  Point at;
  Point normal;
  double strength = 0.0;
};

/// The peak of the slope along the gradient, if it lies within this pixel.
std::optional<Peak> PeakAt(const GradientField& field, int x, int y, double least_strength) {
  const Point gradient = field.At(x, y);
  const double strength = std::sqrt(Dot(gradient, gradient));
  if (strength < least_strength) return std::nullopt;
  const Point normal = (1.0 / strength) * gradient;
  const Point centre = {static_cast<double>(x), static_cast<double>(y)};
  const double before = Dot(normal, field.Between(centre - normal));
  const double after = Dot(normal, field.Between(centre + normal));
  const double curvature = before + after - 2.0 * strength;
  if (strength < before || strength < after || curvature >= 0.0) return std::nullopt;
  const double offset = 0.5 * (before - after) / curvature;
  const Point shift = offset * normal;
  // A peak beyond the pixel belongs to the neighbour; half a pixel and a bit, so that one between two
  // pixels is not lost to rounding.
  constexpr double kHalfPixel = 0.55;
  if (std::abs(shift.x) > kHalfPixel || std::abs(shift.y) > kHalfPixel) return std::nullopt;
  return Peak{x, y, centre + shift, normal, strength};
}

/// Half the sum of strengths lies in points that are at least this strong.
double TypicalStrength(const std::vector<Peak>& peaks) {
  std::vector<double> strengths;
  double total = 0.0;
  for (const Peak& peak : peaks) {
    strengths.push_back(peak.strength);
    total += peak.strength;
  }
  std::sort(strengths.begin(), strengths.end());
  double sum = 0.0;
  for (const double strength : strengths) {
    sum += strength;
    if (sum >= 0.5 * total) return strength;
  }
  return 0.0;
}

/// Peaks in connected stretches of at least `least_count` points that reach `high` somewhere.
std::vector<Peak> StrongStretches(const std::vector<Peak>& peaks, const GradientField& field,
                                  double low, double high, std::size_t least_count) {
  constexpr std::uint32_t kNone = 0xffffffffu;
  std::vector<std::uint32_t> peak_of(
      static_cast<std::size_t>(field.Width()) * static_cast<std::size_t>(field.Height()), kNone);
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    if (peaks[i].strength >= low)
      peak_of[field.Index(peaks[i].x, peaks[i].y)] = static_cast<std::uint32_t>(i);
  }
  std::vector<bool> stays(peaks.size(), false);
  std::vector<std::uint32_t> stretch;
  for (std::size_t start = 0; start < peaks.size(); ++start) {
    std::uint32_t& at_start = peak_of[field.Index(peaks[start].x, peaks[start].y)];
    if (at_start != start) continue;  // weak, or seen
    at_start = kNone;
    stretch.assign(1, static_cast<std::uint32_t>(start));
    bool is_strong = false;
    for (std::size_t i = 0; i < stretch.size(); ++i) {
      const Peak& peak = peaks[stretch[i]];
      is_strong = is_strong || peak.strength >= high;
      for (int y = peak.y - 1; y <= peak.y + 1; ++y) {
        for (int x = peak.x - 1; x <= peak.x + 1; ++x) {
          std::uint32_t& neighbour = peak_of[field.Index(x, y)];
          if (neighbour == kNone) continue;
          stretch.push_back(neighbour);
          neighbour = kNone;
        }
      }
    }
    if (!is_strong || stretch.size() < least_count) continue;
    for (const std::uint32_t i : stretch)
      stays[i] = true;
  }
  std::vector<Peak> strong;
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    if (stays[i]) strong.push_back(peaks[i]);
  }
  return strong;
}

bool IsMasked(const PatternImage& pattern, const ImageView8& mask, Point from_centre) {
  if (mask.IsEmpty()) return false;
  const int x = static_cast<int>(std::floor(from_centre.x + 0.5 * pattern.width));
  const int y = static_cast<int>(std::floor(from_centre.y + 0.5 * pattern.height));
  if (x < 0 || y < 0 || x >= mask.width || y >= mask.height) return true;
  return mask.Row(y)[x] == 0;
}

}  // namespace

FactorImage ShrinkPattern(const PatternImage& pattern, double factor) {
  const int width = static_cast<int>(pattern.width / factor);
  const int height = static_cast<int>(pattern.height / factor);
  const double left = 0.5 * (pattern.width - width * factor);
  const double top = 0.5 * (pattern.height - height * factor);
  FactorImage image;
  image.factor = factor;
  image.width = width;
  image.height = height;
  image.first = {left + 0.5 * factor - 0.5 * pattern.width,
                 top + 0.5 * factor - 0.5 * pattern.height};
  image.grey.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  if (width < 1 || height < 1) return image;

  const std::vector<float> units = UnitsOf(pattern);
  const auto full_width = static_cast<std::size_t>(pattern.width);
  const auto full_height = static_cast<std::size_t>(pattern.height);
  std::vector<float> narrow(static_cast<std::size_t>(width) * full_height);
  std::vector<double> sums(full_width + 1);
  for (std::size_t y = 0; y < full_height; ++y) {
    for (std::size_t x = 0; x < full_width; ++x)
      sums[x + 1] = sums[x] + static_cast<double>(units[y * full_width + x]);
    MeanAlong(sums, left, factor, width, 1, narrow.data() + y * static_cast<std::size_t>(width));
  }
  sums.assign(full_height + 1, 0.0);
  for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
    for (std::size_t y = 0; y < full_height; ++y)
      sums[y + 1] = sums[y] + static_cast<double>(narrow[y * static_cast<std::size_t>(width) + x]);
    MeanAlong(sums, top, factor, height, width, image.grey.data() + x);
  }
  return image;
}

std::vector<EdgePoint> FindPatternEdges(const FactorImage& image, const PatternImage& pattern,
                                        const ImageView8& mask, double noise) {
  if (image.width < 5 || image.height < 5) return {};
  const GradientField field(image);
  const double floor = std::max(kLeastSlope * static_cast<double>(kUnitsPerSlope),
                                kNoiseDeviations * 8.0 * kSobelNoise * noise / image.factor);
  const auto place = [&image](Point at) { return image.first + image.factor * at; };

  std::vector<Peak> peaks;
  for (int y = 2; y + 2 < image.height; ++y) {
    for (int x = 2; x + 2 < image.width; ++x) {
      const auto peak = PeakAt(field, x, y, floor);
      if (peak && !IsMasked(pattern, mask, place(peak->at))) peaks.push_back(*peak);
    }
  }
  const double typical = TypicalStrength(peaks);
  // Crumbs of a few points are grain. What is a crumb depends on the size of the image.
  const double side = std::sqrt(static_cast<double>(image.width) * image.height);
  const auto least_count = static_cast<std::size_t>(std::clamp(side / 16.0, 2.0, 8.0));
  std::vector<EdgePoint> points;
  for (const Peak& peak : StrongStretches(peaks, field, std::max(floor, kLowShare * typical),
                                          std::max(floor, kHighShare * typical), least_count)) {
    points.push_back({place(peak.at), peak.normal, peak.strength});
  }
  return points;
}

}  // namespace orvandel::shape
