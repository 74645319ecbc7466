#include "shape/refinement/strip_selection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "shape/refinement/spline_stencils.h"

namespace orvandel::shape {
namespace {

/// Weaker edges than this share of the strong ones say nearly nothing about the pose.
constexpr float kLeastShareOfStrong = 0.08F;
/// The strong ones: this quantile of all gradient magnitudes.
constexpr double kStrongQuantile = 0.98;
/// Five deviations of noise: one pixel in 300 000 exceeds them by chance.
constexpr double kNoiseDeviations = 5.0;
/// A step of one grey level, spread over the edge's width, has this gradient times the width.
constexpr double kLeastStep = 0.4;

/// Edge pixels of one stretch; more in large patterns, so that there are not thousands of stretches.
constexpr int kStretchLength = 16;
constexpr int kMostStretches = 64;
/// The directions within a stretch differ from the first one's by at most 45 degrees.
constexpr float kLeastCosine = 0.7F;
/// A stretch of fewer strip pixels could not hold a gain and a bias of its own.
constexpr int kLeastStretchPixels = 16;
/// Small stretches of a tile become one: pixels a side where all of the strip is taken, more where it is
/// thinned.
constexpr int kMergeTile = 20;

/// Up to so many strip pixels all are taken. More would make the error smaller by less than the
/// time they take; then a lattice is taken that leaves at most kMostThinned.
constexpr int kMostPixels = 5200;
constexpr int kMostThinned = 3450;

/// A preview takes one pixel in so many of the strip, where the strip has enough of them for noise to be
/// told from what is left.
constexpr int kPreviewThinning = 5;
constexpr int kLeastForPreview = 1500;

constexpr int kMaskReach = 4;  ///< pixels: a stretch's own, and the blur's

constexpr int kNone = -1;

struct Lattice {
  int modulus;  ///< (x + slope * y) mod modulus = 0: one pixel in `modulus`
  int slope;
};
/// Lattices whose points lie as far from each other as their number allows.
constexpr std::array<Lattice, 8> kLattices = {
    {{1, 0}, {2, 1}, {5, 2}, {10, 3}, {13, 5}, {17, 4}, {25, 7}, {37, 6}}};

struct Gradient {
  const FloatImage& dx;
  const FloatImage& dy;

  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(dx.width) +
           static_cast<std::size_t>(x);
  }
  float SquareAt(std::size_t i) const { return dx.grey[i] * dx.grey[i] + dy.grey[i] * dy.grey[i]; }
};

/// Pixels whose 3 x 3 neighbourhood belongs and that keep the margin.
PixelSet UsablePixels(const PixelSet& belongs, int width, int height, int margin) {
  PixelSet usable(belongs.size(), 0);
  for (int y = margin; y < height - margin; ++y) {
    for (int x = margin; x < width - margin; ++x) {
      bool all = true;
      for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx)
          all = all && belongs[static_cast<std::size_t>((y + dy) * width + x + dx)] != 0;
      }
      usable[static_cast<std::size_t>(y * width + x)] = all ? 1 : 0;
    }
  }
  return usable;
}

float EdgeThreshold(const Gradient& gradient, const PixelSet& usable,
                    const StripSelection& selection) {
  std::vector<float> squares;
  for (std::size_t i = 0; i < usable.size(); ++i) {
    if (usable[i] != 0) squares.push_back(gradient.SquareAt(i));
  }
  if (squares.empty()) return std::numeric_limits<float>::infinity();
  const auto strong = squares.begin() + static_cast<std::ptrdiff_t>(
                                            kStrongQuantile * static_cast<double>(squares.size()));
  std::nth_element(squares.begin(), strong, squares.end());
  const double noise = kNoiseDeviations * selection.gradient_gain * selection.noise_deviation;
  const double step = kLeastStep / selection.edge_width;
  return std::max(kLeastShareOfStrong * std::sqrt(*strong),
                  static_cast<float>(std::max(noise, step)));
}

/// The two neighbours across the edge, by the sector of the gradient's direction.
std::ptrdiff_t StepAcross(float dx, float dy, int width) {
  constexpr float kTangent = 0.41421356F;  // of 22.5 degrees
  const float across = std::abs(dx);
  const float down = std::abs(dy);
  if (down <= kTangent * across) return 1;
  if (across <= kTangent * down) return width;
  return (dx > 0) == (dy > 0) ? width + 1 : width - 1;
}

/// Pixels at which the gradient's magnitude has a peak across the edge, row by row.
std::vector<int> EdgePixels(const Gradient& gradient, const PixelSet& usable, float threshold) {
  std::vector<int> edges;
  for (std::size_t i = 0; i < usable.size(); ++i) {
    const float square = usable[i] != 0 ? gradient.SquareAt(i) : 0.0F;
    if (square <= threshold * threshold) continue;
    const auto step = static_cast<std::size_t>(
        StepAcross(gradient.dx.grey[i], gradient.dy.grey[i], gradient.dx.width));
    // One side may be equal, so that a peak of two equal pixels gives one of them.
    if (square > gradient.SquareAt(i - step) && square >= gradient.SquareAt(i + step))
      edges.push_back(static_cast<int>(i));
  }
  return edges;
}

/// Grows stretches over neighbouring edge pixels of like direction. Returns the stretch of each pixel,
/// kNone off the edges.
std::vector<int> GrowStretches(const Gradient& gradient, const std::vector<int>& edges,
                               int longest) {
  const int width = gradient.dx.width;
  constexpr int kFree = -2;  // an edge pixel without a stretch
  std::vector<int> stretch_of(gradient.dx.grey.size(), kNone);
  for (const int i : edges)
    stretch_of[static_cast<std::size_t>(i)] = kFree;
  int num_stretches = 0;
  std::vector<int> grown;
  for (const int seed : edges) {
    if (stretch_of[static_cast<std::size_t>(seed)] != kFree) continue;
    const auto s = static_cast<std::size_t>(seed);
    const float seed_dx = gradient.dx.grey[s];
    const float seed_dy = gradient.dy.grey[s];
    grown.assign(1, seed);
    stretch_of[s] = num_stretches;
    for (std::size_t next = 0; next < grown.size(); ++next) {
      for (const int step : {1, width + 1, width, width - 1, -1, -width - 1, -width, 1 - width}) {
        if (static_cast<int>(grown.size()) >= longest) break;
        const auto i = static_cast<std::size_t>(grown[next] + step);  // edges keep off the border
        if (stretch_of[i] != kFree) continue;
        const float dot = seed_dx * gradient.dx.grey[i] + seed_dy * gradient.dy.grey[i];
        const float squares = gradient.SquareAt(s) * gradient.SquareAt(i);
        if (dot <= 0 || dot * dot < kLeastCosine * kLeastCosine * squares) continue;
        stretch_of[i] = num_stretches;
        grown.push_back(static_cast<int>(i));
      }
    }
    ++num_stretches;
  }
  return stretch_of;
}

/// Gives each usable pixel within `half_width` of an edge pixel the stretch of the nearest one.
std::vector<int> SpreadStretches(const std::vector<int>& edges, const std::vector<int>& stretch_of,
                                 const PixelSet& usable, int width, double half_width) {
  const int reach = static_cast<int>(half_width);
  const auto height = static_cast<int>(usable.size()) / width;
  std::vector<int> nearest(usable.size(), kNone);
  std::vector<int> square(usable.size(), std::numeric_limits<int>::max());
  // How far each row of the disk reaches.
  std::vector<int> half_rows;
  for (int dy = 0; dy <= reach; ++dy)
    half_rows.push_back(static_cast<int>(std::sqrt(half_width * half_width - dy * dy)));
  for (const int edge : edges) {
    const int x = edge % width;
    const int y = edge / width;
    const int stretch = stretch_of[static_cast<std::size_t>(edge)];
    for (int dy = std::max(-reach, -y); dy <= std::min(reach, height - 1 - y); ++dy) {
      const int half = half_rows[static_cast<std::size_t>(std::abs(dy))];
      for (int dx = std::max(-half, -x); dx <= std::min(half, width - 1 - x); ++dx) {
        const auto i = static_cast<std::size_t>(edge + dy * width + dx);
        const int distance = dx * dx + dy * dy;
        if (distance >= square[i] || usable[i] == 0) continue;
        square[i] = distance;
        nearest[i] = stretch;
      }
    }
  }
  return nearest;
}

int CountStripPixels(const std::vector<int>& stretch_of) {
  return static_cast<int>(std::count_if(stretch_of.begin(), stretch_of.end(),
                                        [](int stretch) { return stretch != kNone; }));
}

/// Leaves a lattice of the pixels where they are too many; returns which.
Lattice ThinOut(int width, std::vector<int>& stretch_of) {
  if (CountStripPixels(stretch_of) <= kMostPixels) return kLattices[0];
  for (std::size_t k = 1; k < kLattices.size(); ++k) {
    const Lattice lattice = kLattices[k];
    std::vector<int> thinned(stretch_of.size(), kNone);
    int count = 0;
    for (std::size_t i = 0; i < stretch_of.size(); ++i) {
      if (stretch_of[i] == kNone) continue;
      const auto x = static_cast<int>(i) % width;
      const auto y = static_cast<int>(i) / width;
      if ((x + lattice.slope * y) % lattice.modulus != 0) continue;
      thinned[i] = stretch_of[i];
      ++count;
    }
    if (count > kMostThinned && k + 1 < kLattices.size()) continue;
    stretch_of = std::move(thinned);
    return lattice;
  }
  return kLattices[0];
}

/// Leaves a lattice of what a lattice has left.
void ThinForPreview(int width, Lattice lattice, std::vector<int>& stretch_of) {
  for (std::size_t i = 0; i < stretch_of.size(); ++i) {
    if (stretch_of[i] == kNone) continue;
    const auto x = static_cast<int>(i) % width;
    const auto y = static_cast<int>(i) / width;
    const int number = (x + lattice.slope * y) / lattice.modulus;  // along the row
    if ((number + 2 * y) % kPreviewThinning != 0) stretch_of[i] = kNone;
  }
}

/// Numbers the stretches anew, by their first pixel, the small ones of a tile as one.
int MergeSmallStretches(int width, int thinning, std::vector<int>& stretch_of) {
  const auto tile_side = static_cast<int>(kMergeTile * std::sqrt(static_cast<double>(thinning)));
  const int most =
      stretch_of.empty() ? 0 : 1 + *std::max_element(stretch_of.begin(), stretch_of.end());
  std::vector<int> count(static_cast<std::size_t>(most), 0);
  for (const int stretch : stretch_of) {
    if (stretch != kNone) ++count[static_cast<std::size_t>(stretch)];
  }
  const int tiles_across = width / tile_side + 1;
  const int num_tiles =
      tiles_across * (static_cast<int>(stretch_of.size()) / width / tile_side + 1);
  std::vector<int> number_of_stretch(count.size(), kNone);
  std::vector<int> number_of_tile(static_cast<std::size_t>(num_tiles), kNone);
  int numbers = 0;
  for (std::size_t i = 0; i < stretch_of.size(); ++i) {
    if (stretch_of[i] == kNone) continue;
    const auto stretch = static_cast<std::size_t>(stretch_of[i]);
    const int x = static_cast<int>(i) % width;
    const int y = static_cast<int>(i) / width;
    const auto tile = static_cast<std::size_t>(y / tile_side * tiles_across + x / tile_side);
    int& number = number_of_stretch[stretch];
    if (number == kNone && count[stretch] < kLeastStretchPixels) number = number_of_tile[tile];
    if (number == kNone) {
      number = numbers++;
      if (count[stretch] < kLeastStretchPixels) number_of_tile[tile] = number;
    }
    stretch_of[i] = number;
  }
  return numbers;
}

/// Pixels from which others that do not belong are a few steps away: what lies there differs from scene
/// to scene, and blurs into them.
PixelSet NearMaskBorder(const PixelSet& belongs, int width, int height) {
  PixelSet near(belongs.size(), 0);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (belongs[static_cast<std::size_t>(y * width + x)] != 0) continue;
      for (int v = std::max(y - kMaskReach, 0); v <= std::min(y + kMaskReach, height - 1); ++v) {
        for (int u = std::max(x - kMaskReach, 0); u <= std::min(x + kMaskReach, width - 1); ++u)
          near[static_cast<std::size_t>(v * width + u)] = 1;
      }
    }
  }
  return near;
}

/// Marks the stretches of which most pixels are near the mask's border.
void MarkMaskBorder(const PixelSet& belongs, int width, int height, Strip& strip) {
  if (std::find(belongs.begin(), belongs.end(), 0) == belongs.end()) return;
  const PixelSet near = NearMaskBorder(belongs, width, height);
  for (Stretch& stretch : strip.stretches) {
    int count = 0;
    for (int k = stretch.first; k < stretch.first + stretch.count; ++k) {
      const auto i = static_cast<std::size_t>(k);
      count += near[static_cast<std::size_t>(strip.row[i] * width + strip.column[i])];
    }
    stretch.at_mask_border = 2 * count > stretch.count;
  }
}

/// Lists the pixels stretch by stretch, each filled up to whole blocks with its first pixel.
void ListPixels(const std::vector<int>& stretch_of, int num_stretches, int width, Point origin,
                Strip& strip) {
  std::vector<std::vector<int>> pixels(static_cast<std::size_t>(num_stretches));
  for (std::size_t i = 0; i < stretch_of.size(); ++i) {
    if (stretch_of[i] != kNone)
      pixels[static_cast<std::size_t>(stretch_of[i])].push_back(static_cast<int>(i));
  }
  for (const std::vector<int>& stretch : pixels) {
    const auto count = static_cast<int>(stretch.size());
    const int padded = (count + kStripBlock - 1) / kStripBlock * kStripBlock;
    strip.stretches.push_back({strip.Size(), padded, false});
    strip.num_pixels += count;
    for (int k = 0; k < padded; ++k) {
      const int i = stretch[static_cast<std::size_t>(k < count ? k : 0)];
      const int column = i % width;
      const int row = i / width;
      strip.column.push_back(column);
      strip.row.push_back(row);
      strip.x.push_back(static_cast<float>(column - origin.x));
      strip.y.push_back(static_cast<float>(row - origin.y));
      strip.presence.push_back(k < count ? 1.0F : 0.0F);
    }
  }
}

void FindExtent(Strip& strip) {
  const auto [left, right] = std::minmax_element(strip.x.begin(), strip.x.end());
  const auto [top, bottom] = std::minmax_element(strip.y.begin(), strip.y.end());
  strip.left = *left;
  strip.right = *right;
  strip.top = *top;
  strip.bottom = *bottom;
}

/// The value that a share of a list stays below.
float Quantile(std::vector<float> values, double share) {
  if (values.empty()) return 0.0F;
  const auto at =
      values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

/// The lower 40 % of the gradients are flat, the upper quarter is steep.
void MarkSteepness(const Gradient& gradient, const FloatImage& grey, Strip& strip) {
  constexpr double kFlatShare = 0.4;
  constexpr double kSteepShare = 0.25;
  std::vector<float> squares;
  for (int k = 0; k < strip.Size(); ++k) {
    const auto i = static_cast<std::size_t>(k);
    squares.push_back(gradient.SquareAt(gradient.Index(strip.column[i], strip.row[i])));
  }
  const float flat = Quantile(squares, kFlatShare);
  const float steep = Quantile(squares, 1.0 - kSteepShare);
  std::vector<float> flat_greys;
  for (std::size_t i = 0; i < squares.size(); ++i) {
    if (squares[i] <= flat) flat_greys.push_back(grey.Row(strip.row[i])[strip.column[i]]);
  }
  const float middle = Quantile(flat_greys, 0.5);
  for (std::size_t i = 0; i < squares.size(); ++i) {
    const bool is_dark = grey.Row(strip.row[i])[strip.column[i]] < middle;
    // A clean image's flat pixels are all alike, and then count as flat together.
    strip.steepness.push_back(squares[i] <= flat
                                  ? (is_dark ? Steepness::kFlatDark : Steepness::kFlatBright)
                              : squares[i] < steep ? Steepness::kMiddle
                                                   : Steepness::kSteep);
  }
}

/// Makes a strip of the pixels that have a stretch.
void MakeStrip(const FloatImage& grey, const PixelSet& belongs, Point origin,
               const Gradient& gradient, std::vector<int> stretch_of, Strip& strip) {
  const int width = gradient.dx.width;
  const int num_stretches = MergeSmallStretches(width, strip.thinning, stretch_of);
  ListPixels(stretch_of, num_stretches, width, origin, strip);
  if (strip.num_pixels > 0) FindExtent(strip);
  MarkMaskBorder(belongs, width, gradient.dx.height, strip);
  MarkSteepness(gradient, grey, strip);
}

}  // namespace

void SelectStrip(const FloatImage& grey, const PixelSet& belongs, Point origin,
                 const StripSelection& selection, Strip& strip, Strip& preview) {
  FloatImage dx;
  FloatImage dy;
  SplineGradient(grey, dx, dy);
  const Gradient gradient = {dx, dy};
  const int width = dx.width;
  const PixelSet usable = UsablePixels(belongs, width, dx.height, selection.margin);
  const std::vector<int> edges =
      EdgePixels(gradient, usable, EdgeThreshold(gradient, usable, selection));
  const int longest = std::max(kStretchLength, static_cast<int>(edges.size()) / kMostStretches);
  std::vector<int> stretch_of = SpreadStretches(edges, GrowStretches(gradient, edges, longest),
                                                usable, width, selection.half_width);
  const Lattice lattice = ThinOut(width, stretch_of);
  strip.thinning = lattice.modulus;
  MakeStrip(grey, belongs, origin, gradient, stretch_of, strip);
  if (strip.num_pixels < kLeastForPreview) return;
  preview.thinning = lattice.modulus * kPreviewThinning;
  ThinForPreview(width, lattice, stretch_of);
  MakeStrip(grey, belongs, origin, gradient, std::move(stretch_of), preview);
}

}  // namespace orvandel::shape
