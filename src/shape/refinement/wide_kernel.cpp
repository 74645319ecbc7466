#include "shape/refinement/wide_kernel.h"

#include <cmath>
#include <cstdlib>

#include "base/rounding.h"
#include "base/trigonometry.h"

namespace orvandel::shape {
namespace {

constexpr int kMostReach = 10;
/// Smaller taps at the end are left out; the variance is measured on those that there are.
constexpr double kLeastTap = 1e-4;

constexpr int kNumFrequencies = 24;  ///< up to half a period a pixel

/// The middle of each of the intervals of frequency.
double FrequencyAt(int i) {
  return 0.5 * (i + 0.5) / kNumFrequencies;
}

/// Transform of a box of one pixel.
double BoxResponse(double frequency) {
  const double phase = kPi * frequency;
  return phase > 0.0 ? SinCosOf(phase).sine / phase : 1.0;
}

double FourthPower(double x) {
  return x * x * x * x;
}

/// A cubic B-spline is four boxes after each other, and a pixel is one more.
double ResponseNeeded(double frequency, double scale) {
  const double in_scene = frequency / scale;
  const double scene = FourthPower(BoxResponse(2.0 * in_scene)) * BoxResponse(in_scene);
  const double own = BoxResponse(frequency);
  return scene / (FourthPower(own) * own);
}

}  // namespace

BlurTaps MakeWideKernelTaps(double scale) {
  double responses[kNumFrequencies];
  for (int i = 0; i < kNumFrequencies; ++i)
    responses[i] = ResponseNeeded(FrequencyAt(i), scale);
  double weights[kMostReach + 1] = {};
  int reach = 0;
  for (int k = 0; k <= kMostReach; ++k) {
    for (int i = 0; i < kNumFrequencies; ++i)
      weights[k] += responses[i] * SinCosOf(2.0 * kPi * FrequencyAt(i) * k).cosine;
    weights[k] /= kNumFrequencies;
    if (std::abs(weights[k]) > kLeastTap) reach = k;
  }
  double sum = 0.0;
  double moment = 0.0;
  for (int k = -reach; k <= reach; ++k) {
    sum += weights[std::abs(k)];
    moment += weights[std::abs(k)] * k * k;
  }
  BlurTaps taps;
  taps.variance = moment / sum;
  for (int k = 0; k <= reach; ++k)
    taps.half.push_back(static_cast<float>(weights[k] / sum));
  return taps;
}

}  // namespace orvandel::shape
