#include "cli/overlay.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "base/rounding.h"
#include "cli/contour_set.h"
#include "cli/output_file.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;
using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

constexpr Colour kFoundColour{40, 230, 80};
constexpr Colour kDoubtfulColour{255, 150, 0};
constexpr Colour kMissingColour{240, 50, 50};
constexpr Colour kMarkColour{255, 60, 255};
constexpr Colour kDarkHalo{0, 0, 0};
constexpr Colour kCaptionGround{0, 0, 0};

Colour ColourOf(const FindResult& result) {
  if (result.IsFound()) return kFoundColour;
  return result.HasPose() ? kDoubtfulColour : kMissingColour;
}

void DrawContours(Canvas& canvas, const PatternFinder& finder, const Similarity& pose,
                  Colour colour) {
  constexpr double kWidth = 1.5;
  const Point reference = finder.Facts().reference;
  const SimilarityMap scene_from_pattern(pose);
  std::vector<Polyline> contours = finder.Contours();
  for (Polyline& contour : contours) {
    for (Point& p : contour.points)
      p = scene_from_pattern * (p - reference);
    canvas.DrawPolyline(contour.points, contour.is_closed, kWidth, colour);
  }
}

Point Ahead(Point from, double angle, double length) {
  const auto [sine, cosine] = SinCosOf(angle);
  return from + length * Point{cosine, sine};
}

struct Stroke {
  double width;
  Colour colour;
};

void DrawArrow(Canvas& canvas, Point from, double angle, double length, const Stroke& stroke) {
  const Point tip = Ahead(from, angle, length);
  constexpr double kBarbAngle = 2.6;  // radians from the shaft's direction
  const Point barbs[] = {Ahead(tip, angle + kBarbAngle, length / 4), tip,
                         Ahead(tip, angle - kBarbAngle, length / 4)};
  canvas.DrawLine(from, tip, stroke.width, stroke.colour);
  canvas.DrawPolyline(barbs, false, stroke.width, stroke.colour);
}

// A cross whose arm along the pattern's x axis is an arrow.
void DrawCross(Canvas& canvas, const Similarity& pose, double arm, const Stroke& stroke) {
  const Point at = {pose.x, pose.y};
  const double across = pose.angle + kPi / 2;
  canvas.DrawLine(Ahead(at, pose.angle, -arm), at, stroke.width, stroke.colour);
  canvas.DrawLine(Ahead(at, across, -arm), Ahead(at, across, arm), stroke.width, stroke.colour);
  DrawArrow(canvas, at, pose.angle, 3 * arm, stroke);
}

void DrawReferenceMark(Canvas& canvas, const Similarity& pose) {
  const double shorter_side = std::min(canvas.width(), canvas.height());
  const double arm = std::clamp(shorter_side / 60, 6.0, 30.0);
  const double width = std::max(1.6, arm / 8);
  DrawCross(canvas, pose, arm, {3 * width, kDarkHalo});  // sets it off from busy contours
  DrawCross(canvas, pose, arm, {width, kMarkColour});
}

std::string Caption(const FindResult& result) {
  if (!result.HasPose()) {
    std::string text = StatusWord(result.status);
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
  }
  const Similarity& pose = result.scene_from_pattern;
  return fmt::format("{} {}%  x {} y {}  {} deg  scale {}",
                     result.IsFound() ? "found" : "not found", Fixed(result.score, 1),
                     Fixed(pose.x, 1), Fixed(pose.y, 1), Fixed(Degrees(pose.angle), 2),
                     Fixed(pose.scale, 3));
}

void DrawCaption(Canvas& canvas, const std::string& text, Colour colour) {
  constexpr int kWantedDots = 500;  // across the image
  const int largest_dot = std::max(1, (canvas.width() - 8) / Canvas::TextWidth(text, 1));
  const int dot = std::min(largest_dot, std::max(2, canvas.width() / kWantedDots));
  const int margin = 3 * dot;
  canvas.FillRectangle(0, 0, Canvas::TextWidth(text, dot) + 2 * margin,
                       Canvas::TextHeight(dot) + 2 * margin, kCaptionGround, 0.65);
  canvas.DrawText(margin, margin, dot, text, colour);
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

void DrawFindResult(Canvas& canvas, const PatternFinder& finder, const FindResult& result) {
  const Colour colour = ColourOf(result);
  if (result.HasPose()) {
    DrawContours(canvas, finder, result.scene_from_pattern, colour);
    DrawReferenceMark(canvas, result.scene_from_pattern);
  }
  DrawCaption(canvas, Caption(result), colour);
  DrawFrame(canvas, colour);
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
