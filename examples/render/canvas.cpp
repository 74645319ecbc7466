#include "examples/render/canvas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "examples/render/noise.h"

namespace orvandel::render {
namespace {

/// A fill's grey values over the image: `grey` at (0, 0) and its steps by column and by row.
Fill InImage(const Fill& fill, const Pose& image_from_part) {
  const Point along = Direction(image_from_part.angle_deg);
  const Point slope =
      (1.0 / image_from_part.scale) * (fill.per_x * along + fill.per_y * QuarterTurn(along));
  const Point origin{image_from_part.x, image_from_part.y};
  return {fill.grey - Dot(slope, origin), slope.x, slope.y};
}

/// Weights of the offsets 0, 1, 2, ... of a Gaussian that is cut at four sigma; with their mirror
/// images they sum to 1.
std::vector<double> GaussianWeights(double sigma) {
  const int reach = static_cast<int>(std::ceil(4 * sigma));
  std::vector<double> weights;
  double sum = 0;
  for (int offset = 0; offset <= reach; ++offset) {
    weights.push_back(WithoutLastBits(std::exp(-0.5 * offset * offset / (sigma * sigma))));
    sum += offset == 0 ? weights.back() : 2 * weights.back();
  }
  for (double& weight : weights)
    weight /= sum;
  return weights;
}

/// Convolves `count` values that lie `stride` apart.
void Convolve(double* first, int count, std::ptrdiff_t stride, const std::vector<double>& weights,
              std::vector<double>& padded) {
  const int reach = static_cast<int>(weights.size()) - 1;
  padded.resize(static_cast<std::size_t>(count + 2 * reach));
  for (int i = -reach; i < count + reach; ++i) {
    const int inside = std::clamp(i, 0, count - 1);
    padded[static_cast<std::size_t>(i + reach)] = first[inside * stride];
  }
  for (int i = 0; i < count; ++i) {
    const double* middle = &padded[static_cast<std::size_t>(i + reach)];
    double sum = weights[0] * middle[0];
    for (int offset = 1; offset <= reach; ++offset)
      sum += weights[static_cast<std::size_t>(offset)] * (middle[-offset] + middle[offset]);
    first[i * stride] = sum;
  }
}

}  // namespace

Canvas::Canvas(Size size, double ground)
    : size_(size),
      grey_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), ground) {}

double* Canvas::Row(int y) {
  return grey_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width);
}

void Canvas::Paint(const Shape& shape, const Pose& image_from_part) {
  const Coverage coverage = CoverShape(shape, image_from_part, size_);
  const Fill fill = InImage(shape.fill, image_from_part);
  const double* share = coverage.share.data();
  for (int y = coverage.top; y < coverage.top + coverage.height; ++y) {
    double* row = Row(y);
    for (int x = coverage.left; x < coverage.left + coverage.width; ++x, ++share)
      row[x] += *share * (fill.grey + x * fill.per_x + y * fill.per_y - row[x]);
  }
}

void Canvas::ScaleContrast(double ground, double factor) {
  for (double& value : grey_)
    value = ground + factor * (value - ground);
}

void Canvas::Blur(double sigma_px) {
  if (sigma_px <= 0) return;
  const std::vector<double> weights = GaussianWeights(sigma_px);
  std::vector<double> padded;
  for (int y = 0; y < size_.height; ++y)
    Convolve(Row(y), size_.width, 1, weights, padded);
  for (int x = 0; x < size_.width; ++x)
    Convolve(grey_.data() + x, size_.height, size_.width, weights, padded);
}

void Canvas::Dim(double falloff, double direction_deg) {
  const Point direction = Direction(direction_deg);
  const Point centre{(size_.width - 1) / 2.0, (size_.height - 1) / 2.0};
  // Half the image's extent along the direction; 1 keeps a single pixel in full light.
  const double half =
      std::max(std::abs(direction.x) * centre.x + std::abs(direction.y) * centre.y, 1.0);
  for (int y = 0; y < size_.height; ++y) {
    double* row = Row(y);
    for (int x = 0; x < size_.width; ++x) {
      const Point from_centre = Point{static_cast<double>(x), static_cast<double>(y)} - centre;
      row[x] *= 1 - falloff * (1 + Dot(direction, from_centre) / half) / 2;
    }
  }
}

void Canvas::AddNoise(double sigma, std::uint64_t seed) {
  if (sigma <= 0) return;
  RandomSource random(seed);
  for (double& value : grey_)
    value += sigma * random.NearlyNormal();
}

double Canvas::Total() const {
  double total = 0;
  for (const double value : grey_)
    total += value;
  return total;
}

ImagePtr Canvas::Round() const {
  ImagePtr image(im_create(1, size_.width, size_.height));
  if (!image) return image;
  const double* value = grey_.data();
  for (int y = 0; y < size_.height; ++y) {
    for (int x = 0; x < size_.width; ++x)
      image->row[y][x] = static_cast<std::uint8_t>(std::clamp(*value++, 0.0, 255.0) + 0.5);
  }
  return image;
}

}  // namespace orvandel::render
