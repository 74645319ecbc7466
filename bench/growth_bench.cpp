// How cost grows with image size, number of contours and number of segments.

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/search_runs.h"
#include "bench/segment_runs.h"
#include "bench/side_by_side.h"
#include "bench/stages.h"
#include "bench/svg_plot.h"
#include "evaluation/cluttered_scenes.h"
#include "evaluation/paths.h"

namespace orvandel::bench {
namespace {

constexpr double kNoise = 2;  // grey levels

NamedImage Draw(render::Size size, int num_parts, std::uint32_t seed) {
  return {std::to_string(num_parts) + " parts",
          evaluation::Render({size, num_parts, kNoise, seed})};
}

/// Collects a library's and a reference form's series over the same x.
struct PairOfSeries {
  PlotSeries library{"Orvandel", {}};
  PlotSeries reference{"reference form", {}};

  void Add(double x, const TimePair& times) {
    library.points.push_back({x, times.ours_s * 1000});
    reference.points.push_back({x, times.theirs_s * 1000});
  }
  std::vector<PlotSeries> Both() const { return {library, reference}; }
};

/// Time to segments, against what `x_of(image, run)` tells of each image.
template <typename XOf>
PairOfSeries TimeSegments(const std::vector<NamedImage>& images, const XOf& x_of) {
  PairOfSeries series;
  for (const NamedImage& input : images) {
    LibrarySegments ours;
    ReferenceSegments theirs;
    const TimePair times = TimeInTurn([&] { return ours(input); }, [&] { return theirs(input); });
    series.Add(x_of(input, ours), times);
  }
  return series;
}

Plot CostBySize() {
  std::vector<NamedImage> images;
  std::uint32_t seed = 0;
  for (const render::Size size :
       {render::Size{320, 240}, render::Size{640, 480}, render::Size{1000, 750},
        render::Size{1280, 1024}, render::Size{1600, 1200}, render::Size{2000, 1500},
        render::Size{2400, 1800}, render::Size{2800, 2100}}) {
    images.push_back(Draw(size, evaluation::PartsForSize(size), ++seed));
  }
  const auto series = TimeSegments(
      images, [](const NamedImage& input, const LibrarySegments&) { return input.Megapixels(); });
  return {"Image to line segments, equally crowded images", "megapixels", "ms", series.Both()};
}

Plot CostByContours() {
  std::vector<NamedImage> images;
  std::uint32_t seed = 0;
  for (const int num_parts : {4, 10, 20, 35, 50, 75, 100, 150, 200, 300})
    images.push_back(Draw({1280, 1024}, num_parts, ++seed));
  const auto series = TimeSegments(images, [](const NamedImage&, const LibrarySegments& run) {
    return static_cast<double>(run.num_contours());
  });
  return {"Image to line segments, images of 1280 x 1024", "contours", "ms", series.Both()};
}

/// An accept score out of reach lets the search try every pair of segments.
Plot CostBySegments() {
  test::ReferenceParameters parameters;
  parameters.accept_score = 101;
  const NamedImage pattern{"bracket", evaluation::BracketPattern()};
  PairOfSeries series;
  std::uint32_t seed = 0;
  for (const int num_parts : {2, 4, 8, 12, 16, 20, 26, 32, 40, 50}) {
    const NamedImage scene = Draw({640, 480}, num_parts, ++seed);
    LibrarySegments segments;
    segments(scene);
    LibrarySearch ours(parameters);
    ReferenceSearch theirs(parameters);
    series.Add(segments.num_segments(), TimeInTurn([&] { return ours(pattern, scene); },
                                                   [&] { return theirs(pattern, scene); }));
  }
  return {"Search to its end, scenes of 640 x 480", "line segments in the scene", "ms",
          series.Both()};
}

void Write(const Plot& plot, const std::filesystem::path& path) {
  std::ofstream file(path);
  file << SvgOf(plot);
  file.close();
  if (!file) throw std::runtime_error("cannot write " + evaluation::Utf8FromPath(path));
}

}  // namespace

void PlotGrowth(const std::string& folder) {
  const std::filesystem::path path = evaluation::PathFromUtf8(folder);
  std::filesystem::create_directories(path);
  Write(CostBySize(), path / "cost-by-image-size.svg");
  Write(CostByContours(), path / "cost-by-contours.svg");
  Write(CostBySegments(), path / "cost-by-segments.svg");
}

}  // namespace orvandel::bench
