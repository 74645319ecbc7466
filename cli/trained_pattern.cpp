#include "cli/trained_pattern.h"

#include <cstddef>
#include <vector>

#include <fmt/format.h>

#include "evaluation/classic_pixels.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::Fixed;

namespace {

void PrintSize(const PatternFacts& facts, Report& report) {
  report.Print(fmt::format("pattern          {} x {} pixels\n", facts.width, facts.height));
}

void PrintReference(const PatternFacts& facts, Report& report) {
  report.Print(fmt::format("reference point  ({}, {})\n", Fixed(facts.reference.x, 2),
                           Fixed(facts.reference.y, 2)));
}

void PrintLevels(const PatternFacts& facts, const ShapeFacts& shape, Report& report) {
  report.Print(fmt::format("\n{:>8}  {:>13}  {:>8}  {:>8}  {:>8}\n", "scale", "pixels", "points",
                           "tracking", "search"));
  for (const ShapeFacts::Level& level : shape.levels) {
    const std::string pixels = fmt::format("{} x {}", Fixed(facts.width / level.factor, 0),
                                           Fixed(facts.height / level.factor, 0));
    report.Print(fmt::format("{:>8}  {:>13}  {:>8}  {:>8}  {:>8}\n", Fixed(1 / level.factor, 4),
                             pixels, level.num_all, level.num_fine, level.num_coarse));
  }
}

void PrintChances(const ShapeFacts& shape, Report& report) {
  report.Print("\nchance score, by scale\n");
  for (const shape::ChanceLevel& chance : shape.chances) {
    report.Print(fmt::format("{:>8} - {:<8}  {}\n", fmt::format("{:g}", chance.scale),
                             fmt::format("{:g}", 2 * chance.scale), Fixed(chance.score, 3)));
  }
}

std::vector<Polyline> DotsAt(const shape::EdgePoints& points, Point centre) {
  std::vector<Polyline> dots;
  for (std::size_t i = 0; i < points.size; ++i) {
    const Point at = evaluation::ToClassicPixels(
        centre + Point{static_cast<double>(points.x[i]), static_cast<double>(points.y[i])});
    dots.push_back({{at, at}, false});
  }
  return dots;
}

}  // namespace

void PrintTrained(const PatternFacts& facts, Report& report) {
  const auto& shape = std::get<ShapeFacts>(facts.learnt);
  PrintSize(facts, report);
  report.Print(fmt::format("edge points      {}\n", NumEdgePoints(shape)));
  PrintReference(facts, report);
  report.Print(fmt::format("smallest scale   {}\n", Fixed(SmallestScale(shape), 3)));
  report.Print(fmt::format("learnt in        {} ms\n", Fixed(facts.learning_ms, 1)));
  PrintLevels(facts, shape, report);
  PrintChances(shape, report);
}

void PrintTrained(const PatternFacts& facts, bool is_estimated_threshold, Report& report) {
  const auto& segments = std::get<SegmentFacts>(facts.learnt);
  PrintSize(facts, report);
  report.Print(fmt::format("contours         {}, of {} points\n", segments.num_contours,
                           segments.num_points));
  report.Print(fmt::format("straight edges   {}\n", segments.num_lines));
  PrintReference(facts, report);
  report.Print(fmt::format("edge threshold   {}{}\n", segments.edge_threshold,
                           is_estimated_threshold ? " (estimated)" : ""));
}

void DrawEdgePoints(Canvas& canvas, const shape::ShapeModel& model) {
  constexpr Colour kPointColour{40, 230, 80};
  constexpr Colour kSearchColour{255, 220, 40};
  const Point centre = {0.5 * (model.Width() - 1), 0.5 * (model.Height() - 1)};
  const shape::ModelLevel& level = model.levels.front();
  const double dot_px = 1.0 + 0.25 * canvas.zoom();
  canvas.DrawStrokes(DotsAt(level.all, centre), dot_px, kPointColour);
  canvas.DrawStrokes(DotsAt(level.coarse, centre), 2.2 * dot_px, kSearchColour);
}

void DrawContours(Canvas& canvas, const SegmentFinder& finder) {
  const Point reference = evaluation::ToClassicPixels(finder.Facts().reference);
  int num_drawn = 0;
  for (Polyline& contour : finder.Outline()) {
    for (Point& p : contour.points)
      p = p + reference;
    canvas.DrawPolyline(contour.points, contour.is_closed, 1.3, DistinctColour(num_drawn++));
  }
}

}  // namespace orvandel::cli
