// How far searches run past their time budgets on the worst scenes. A search tests the time once after every score, and
// a search whose time is up still ends its pass over the scene's segments, with at most one score for each, refines
// the best pose with 32 scores and scores it once along all contours. What that takes is measured beside the
// searches: with a counter that says at the first test of the coarse search that the time is up.
//
// Prints the distribution; fails when more scores than that were made after the time was up.
//
// Usage: orvandel_overrun SEARCHES
//   SEARCHES  for each scene, with budgets from 0 to what the whole search takes

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/endurance/frames.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/segment_engine.h"
#include "tests/support/images.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

using Clock = std::chrono::steady_clock;

struct NamedScene {
  std::string name;
  ImagePtr image;
};

/// Noise that is smooth enough for long contours.
ImagePtr SmoothNoise(int width, int height) {
  UniformRandom random(1);
  const ImagePtr noise = MakeImage(width, height, [&](int, int) { return random.Integer(0, 255); });
  return MakeImage(width, height, [&](int x, int y) {
    int sum = 0;
    for (int dy = 0; dy < 4; ++dy) {
      for (int dx = 0; dx < 4; ++dx)
        sum += noise->row[std::min(y + dy, height - 1)][std::min(x + dx, width - 1)];
    }
    return std::clamp(128 + (sum / 16 - 128) * 3, 0, 255);
  });
}

/// Squares of `side` pixels on a rotated grid, so that no two edges fall on the same pixels.
ImagePtr RotatedCheckerboard(int width, int height, double side) {
  const double c = std::cos(0.3) / side;
  const double s = std::sin(0.3) / side;
  return MakeImage(width, height, [=](int x, int y) {
    const auto column = static_cast<int>(std::floor(c * x + s * y));
    const auto row = static_cast<int>(std::floor(c * y - s * x));
    return ((column + row) & 1) == 0 ? 40 : 210;
  });
}

/// Light squares apart from each other: four segments each.
ImagePtr ManySquares(int width, int height) {
  return MakeImage(width, height, [](int x, int y) {
    return x % 28 >= 6 && x % 28 < 22 && y % 28 >= 6 && y % 28 < 22 ? 200 : 50;
  });
}

std::vector<NamedScene> WorstScenes() {
  std::vector<NamedScene> scenes;
  scenes.push_back({"smooth noise 640 x 480", SmoothNoise(640, 480)});
  scenes.push_back({"checkerboard 640 x 480", RotatedCheckerboard(640, 480, 14)});
  scenes.push_back({"squares 1200 x 900", ManySquares(1200, 900)});
  scenes.push_back({"checkerboard 1600 x 1200", RotatedCheckerboard(1600, 1200, 20)});
  return scenes;
}

class TimedSearch {
 public:
  TimedSearch() : engine_(EndurancePattern()) {
    engine_.options.accept_score = 101;  // nothing is accepted before every pose was tried
  }

  double MicrosecondsOn(const ImagePtr& scene, int timeout_us) {
    engine_.options.timeout_us = timeout_us;
    const ImagePtr copy = CopyOf(scene);
    const auto start = Clock::now();
    match_ = engine_.FindAndOverwrite(copy);
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
  }

  /// Reads of the counter: the start, after the contours, after the segments, after every score.
  double MicrosecondsWithTimeUpAtRead(const ImagePtr& scene, int read) {
    const ScriptedCounter counter(TimeThatExpiresAtRead(read));
    return MicrosecondsOn(scene, 1000);
  }

  /// What the last search found.
  const SegmentMatch& match() const { return match_; }

 private:
  SegmentEngine engine_;
  SegmentMatch match_;
};

double Quantile(const std::vector<double>& sorted, double share) {
  if (sorted.empty()) return 0.0;
  const auto index =
      static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
  return sorted[std::clamp<std::size_t>(index, 1, sorted.size()) - 1];
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return Quantile(values, 0.5);
}

/// @return  false when a search tried more poses than it may once its time is up.
bool Measure(const NamedScene& scene, int num_searches) {
  TimedSearch search;
  std::vector<double> whole;
  std::vector<double> preparation;
  std::vector<double> allowed;
  for (int i = 0; i < 9; ++i) {
    whole.push_back(search.MicrosecondsOn(scene.image, 3999000));
    preparation.push_back(search.MicrosecondsWithTimeUpAtRead(scene.image, 2));
    allowed.push_back(search.MicrosecondsWithTimeUpAtRead(scene.image, 3) - preparation.back());
  }
  const SegmentMatch hurried = search.match();  // its time was up at the first score
  const bool in_bounds = hurried.num_poses > 0 && hurried.num_poses <= hurried.NumSegments();

  UniformRandom random(2);
  std::vector<double> past;
  int num_cut_short = 0;
  for (int i = 0; i < num_searches; ++i) {
    const int budget_us = static_cast<int>(random.Real(Median(preparation), Median(whole)));
    const double over = search.MicrosecondsOn(scene.image, budget_us) - budget_us;
    past.push_back(std::max(over, 0.0));
    if (over > 0) ++num_cut_short;
  }
  std::sort(past.begin(), past.end());
  std::printf("%-26s %8d %9.2f %9.2f %9.2f  %6d %8.2f %8.2f %8.2f %8.2f %8.2f\n",
              scene.name.c_str(), hurried.NumSegments(), Median(whole) / 1000,
              Median(preparation) / 1000, Median(allowed) / 1000, num_cut_short,
              Quantile(past, 0.5) / 1000, Quantile(past, 0.9) / 1000, Quantile(past, 0.99) / 1000,
              Quantile(past, 0.999) / 1000, past.back() / 1000);
  if (!in_bounds) {
    std::printf("%lld scores of %d segments after the time was up\n",
                static_cast<long long>(hurried.num_poses), hurried.NumSegments());
  }
  std::fflush(stdout);
  return in_bounds;
}

}  // namespace
}  // namespace orvandel::test

int main(int argc, char** argv) {
  const long num_searches = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
  if (num_searches < 1 || num_searches > 10000000) {
    std::fprintf(stderr, "Usage: orvandel_overrun SEARCHES\n");
    return 2;
  }
  std::printf(
      "Milliseconds past the budget, of %ld searches a scene with budgets between preparation and "
      "whole\n",
      num_searches);
  std::printf("%-26s %8s %9s %9s %9s  %6s %8s %8s %8s %8s %8s\n", "scene", "segments", "whole",
              "prepare", "allowed", "past", "median", "p90", "p99", "p99.9", "most");
  bool all_in_bounds = true;
  for (const auto& scene : orvandel::test::WorstScenes())
    all_in_bounds &= orvandel::test::Measure(scene, static_cast<int>(num_searches));
  return all_in_bounds ? 0 : 1;
}
