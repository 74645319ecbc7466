#include "cli/overlay.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/rounding.h"
#include "cli/label_places.h"
#include "cli/output_file.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;
using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

constexpr Colour kFoundColours[] = {{40, 230, 80}, {60, 190, 255}, {255, 220, 40}, {255, 110, 210}};
constexpr Colour kDoubtfulColour{255, 150, 0};
constexpr Colour kMissingColour{240, 50, 50};
constexpr Colour kMarkColour{255, 60, 255};
constexpr Colour kDark{0, 0, 0};

/// More labels than this tell number and score alone.
constexpr std::size_t kManyMatches = 15;

Colour FoundColour(std::size_t pattern) {
  return pattern < std::size(kFoundColours) ? kFoundColours[pattern]
                                            : DistinctColour(static_cast<int>(pattern));
}

/// A match as it is drawn.
struct Figure {
  Similarity scene_from_pattern;  // in the canvas's count of pixels
  std::vector<Polyline> strokes;
  PixelBox box;  // canvas pixels
  Colour colour;
  std::vector<std::string> label;
};

double LineWidth(const Canvas& canvas) {
  return std::clamp(std::min(canvas.width(), canvas.height()) / 400.0, 1.5, 4.0);
}

double TextHeight(const Canvas& canvas) {
  return std::clamp(canvas.width() / 95.0, 7.0, 22.0);
}

std::string ScoreText(const FoundMatch& match) {
  return match.details ? Fixed(match.score, 3) : Fixed(match.score, 1) + "%";
}

std::string AngleText(const FoundMatch& match) {
  if (!match.HasAngle()) return "any angle";
  return Fixed(Degrees(match.scene_from_pattern.angle), 2) + "\u00B0";
}

std::vector<std::string> LabelOf(const FoundMatch& match, const std::string& name, int number,
                                 bool is_brief) {
  std::string first = fmt::format("#{} {}", number, ScoreText(match));
  if (!name.empty()) first = fmt::format("#{} {} {}", number, name, ScoreText(match));
  if (is_brief) return {first};
  const Similarity& pose = match.scene_from_pattern;
  return {first, fmt::format("{}, {}", Fixed(pose.x, 2), Fixed(pose.y, 2)),
          fmt::format("{} \u00D7{}", AngleText(match), Fixed(pose.scale, 3))};
}

PixelBox BoxAround(const std::vector<Polyline>& strokes, int zoom) {
  constexpr double kFar = 1e9;
  PixelBox box = {kFar, kFar, -kFar, -kFar};
  for (const Polyline& stroke : strokes) {
    for (const Point p : stroke.points) {
      box.left = std::min(box.left, zoom * p.x);
      box.top = std::min(box.top, zoom * p.y);
      box.right = std::max(box.right, zoom * p.x);
      box.bottom = std::max(box.bottom, zoom * p.y);
    }
  }
  return box;
}

std::vector<Polyline> AtPose(std::vector<Polyline> strokes, const Similarity& pose) {
  const SimilarityMap scene_from_pattern(pose);
  for (Polyline& stroke : strokes) {
    for (Point& p : stroke.points)
      p = scene_from_pattern * p;
  }
  return strokes;
}

std::vector<Figure> FiguresOf(std::span<const DrawnFind> finds, int zoom) {
  std::size_t num_matches = 0;
  for (const DrawnFind& find : finds)
    num_matches += find.result->matches.size();
  std::vector<Figure> figures;
  for (std::size_t i = 0; i < finds.size(); ++i) {
    const std::vector<Polyline> outline = finds[i].finder->Outline();
    int number = 0;
    for (const FoundMatch& match : finds[i].result->matches) {
      Figure figure;
      figure.scene_from_pattern = evaluation::ToClassicPixels(match.scene_from_pattern);
      figure.strokes = AtPose(outline, figure.scene_from_pattern);
      figure.box = BoxAround(figure.strokes, zoom);
      figure.colour = match.is_accepted ? FoundColour(i) : kDoubtfulColour;
      figure.label = LabelOf(match, finds[i].name, ++number, num_matches > kManyMatches);
      figures.push_back(std::move(figure));
    }
  }
  return figures;
}

Point Ahead(Point from, double angle, double length) {
  const auto [sine, cosine] = SinCosOf(angle);
  return from + length * Point{cosine, sine};
}

/// A cross whose arm along the pattern's x axis is an arrow.
std::vector<Polyline> CrossAt(const Similarity& pose, double arm) {
  constexpr double kBarbAngle = 2.6;  // radians from the shaft's direction
  const Point at = {pose.x, pose.y};
  const double across = pose.angle + kPi / 2;
  const Point tip = Ahead(at, pose.angle, 3 * arm);
  return {
      {{Ahead(at, pose.angle, -arm), tip}, false},
      {{Ahead(at, across, -arm), Ahead(at, across, arm)}, false},
      {{Ahead(tip, pose.angle + kBarbAngle, arm), tip, Ahead(tip, pose.angle - kBarbAngle, arm)},
       false}};
}

/// The dark rim sets lines off from busy ground.
void DrawWithRim(Canvas& canvas, const std::vector<Polyline>& strokes, double width,
                 Colour colour) {
  canvas.DrawStrokes(strokes, 2.2 * width, kDark, 0.55);
  canvas.DrawStrokes(strokes, width, colour);
}

void DrawReferenceMark(Canvas& canvas, const Figure& figure) {
  const double size =
      std::min(figure.box.right - figure.box.left, figure.box.bottom - figure.box.top);
  const double arm = std::clamp(size / 16, 3.0, 16.0) / canvas.zoom();
  DrawWithRim(canvas, CrossAt(figure.scene_from_pattern, arm), 0.8 * LineWidth(canvas),
              kMarkColour);
}

/// Lines of text on a dark plate.
class TextPlate {
 public:
  TextPlate(const Canvas& canvas, std::vector<std::string> lines)
      : lines_(std::move(lines)), height_px_(TextHeight(canvas)), margin_(0.6 * height_px_) {
    for (const std::string& line : lines_)
      width_ = std::max(width_, Canvas::TextWidth(line, height_px_));
    const double room = canvas.width() - 2 * margin_;
    if (width_ > room) {
      height_px_ *= room / width_;
      width_ = room;
    }
  }

  double Width() const { return width_ + 2 * margin_; }
  double Height() const {
    return static_cast<double>(lines_.size()) * Pitch() - (Pitch() - height_px_) + 2 * margin_;
  }

  void Draw(Canvas& canvas, double x, double y, Colour colour) const {
    const auto whole = [](double value) { return static_cast<int>(std::lround(value)); };
    canvas.FillRectangle(whole(x), whole(y), whole(Width()), whole(Height()), kDark, 0.62);
    y += margin_;
    for (const std::string& line : lines_) {
      canvas.DrawText(x + margin_, y, height_px_, line, colour);
      y += Pitch();
    }
  }

 private:
  double Pitch() const { return 1.6 * height_px_; }

  std::vector<std::string> lines_;
  double height_px_;
  double margin_;
  double width_ = 0;
};

void DrawLabels(Canvas& canvas, const std::vector<Figure>& figures) {
  std::vector<PixelBox> boxes;
  boxes.reserve(figures.size());
  for (const Figure& figure : figures)
    boxes.push_back(figure.box);
  LabelPlaces places(canvas.width(), canvas.height(), boxes);
  for (const Figure& figure : figures) {
    const TextPlate plate(canvas, figure.label);
    const PixelBox place = places.Place(figure.box, plate.Width(), plate.Height());
    plate.Draw(canvas, place.left, place.top, figure.colour);
  }
}

/// Why there is no pose; empty where every pattern has one.
std::vector<std::string> WhatIsMissing(std::span<const DrawnFind> finds) {
  std::vector<std::string> lines;
  for (const DrawnFind& find : finds) {
    if (!find.result->matches.empty()) continue;
    std::string text = StatusWord(find.result->status);
    std::replace(text.begin(), text.end(), '_', ' ');
    lines.push_back(find.name.empty() ? text : find.name + ": " + text);
  }
  return lines;
}

Colour FrameColour(std::span<const DrawnFind> finds) {
  const auto all = [&](auto holds) { return std::all_of(finds.begin(), finds.end(), holds); };
  if (all([](const DrawnFind& find) { return find.result->IsFound(); })) return kFoundColours[0];
  return all([](const DrawnFind& find) { return !find.result->matches.empty(); }) ? kDoubtfulColour
                                                                                  : kMissingColour;
}

void DrawFrame(Canvas& canvas, Colour colour) {
  const int w = canvas.width();
  const int h = canvas.height();
  const int thickness = std::max(1, std::min(w, h) / 200);
  canvas.FillRectangle(0, 0, w, thickness, colour, 1);
  canvas.FillRectangle(0, h - thickness, w, thickness, colour, 1);
  canvas.FillRectangle(0, thickness, thickness, h - 2 * thickness, colour, 1);
  canvas.FillRectangle(w - thickness, thickness, thickness, h - 2 * thickness, colour, 1);
}

std::string InSmallLetters(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// A manifest's names for its cases may hold anything; as part of a file's name they must not lead
// out of the folder.
std::string WithoutSeparators(std::string name) {
  for (char& c : name) {
    if (c == '/' || c == '\\' || c == ':') c = '_';
  }
  return name;
}

}  // namespace

void DrawFinds(Canvas& canvas, std::span<const DrawnFind> finds) {
  const std::vector<Figure> figures = FiguresOf(finds, canvas.zoom());
  for (const Figure& figure : figures)
    DrawWithRim(canvas, figure.strokes, LineWidth(canvas), figure.colour);
  for (const Figure& figure : figures)
    DrawReferenceMark(canvas, figure);
  DrawLabels(canvas, figures);
  if (const std::vector<std::string> missing = WhatIsMissing(finds); !missing.empty())
    TextPlate(canvas, missing).Draw(canvas, 0, 0, kMissingColour);
  DrawFrame(canvas, FrameColour(finds));
}

std::string OverlayFolder::Write(const std::string& name, const Canvas& canvas) {
  MakeFolder(folder_);
  std::string path =
      Utf8FromPath(PathFromUtf8(folder_) / PathFromUtf8(UnusedName(name) + ".overlay.png"));
  WriteFile(path, canvas.EncodePng());
  return path;
}

std::string OverlayFolder::UnusedName(const std::string& name) {
  const std::string wanted = WithoutSeparators(name);
  std::string unused = wanted;
  for (int i = 2; !used_names_.insert(InSmallLetters(unused)).second; ++i)
    unused = fmt::format("{}-{}", wanted, i);
  return unused;
}

}  // namespace orvandel::cli
