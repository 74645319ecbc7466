#include "cli/canvas.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/rounding.h"
#include "cli/png.h"
#include "cli/stroke_font.h"

namespace orvandel::cli {
namespace {

constexpr double kPieceLength = 32;  // keeps the box around a piece of a slanting line small
constexpr double kFarAway = 1e6;     // pixels; nothing out there is near an image

bool IsNear(Point p) {
  return std::abs(p.x) < kFarAway && std::abs(p.y) < kFarAway;  // false for not-a-number
}

double Distance(Point a, Point b) {
  const Point step = b - a;
  return Hypot(step.x, step.y);
}

double DistanceToSegment(Point p, Point from, Point to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double squared_length = dx * dx + dy * dy;
  const double along =
      squared_length > 0 ? ((p.x - from.x) * dx + (p.y - from.y) * dy) / squared_length : 0;
  const double t = std::clamp(along, 0.0, 1.0);
  return Distance(p, {from.x + t * dx, from.y + t * dy});
}

std::uint8_t ToByte(double value) {
  return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

}  // namespace

Colour DistinctColour(int i) {
  constexpr double kGoldenTurn = 0.6180339887498949;  // never comes back to an earlier hue
  const double hue = i * kGoldenTurn;
  const auto channel = [&](double shift) {
    return ToByte(150 + 105 * std::cos(kTwoPi * (hue + shift)));
  };
  return {channel(0), channel(1.0 / 3), channel(2.0 / 3)};
}

Canvas::Canvas(const tImage& image, int zoom, double brightness)
    : width_(image.width * zoom), height_(image.height * zoom), zoom_(zoom) {
  const std::size_t num_pixels =
      static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  rgb_.reserve(3 * num_pixels);
  for (int y = 0; y < height_; ++y) {
    const std::uint8_t* const row = image.row[y / zoom];
    for (int x = 0; x < width_; ++x) {
      const std::uint8_t grey = row[x / zoom];
      rgb_.insert(rgb_.end(), 3, ToByte(grey * brightness));
    }
  }
  coverage_.resize(num_pixels);
}

void Canvas::DrawLine(Point from, Point to, double width_px, Colour colour) {
  CoverSegment(OnCanvas(from), OnCanvas(to), width_px);
  PaintCovered(colour);
}

void Canvas::DrawPolyline(std::span<const Point> points, bool closed, double width_px,
                          Colour colour) {
  for (std::size_t i = 1; i < points.size(); ++i)
    CoverSegment(OnCanvas(points[i - 1]), OnCanvas(points[i]), width_px);
  if (closed && points.size() > 2)
    CoverSegment(OnCanvas(points.back()), OnCanvas(points.front()), width_px);
  PaintCovered(colour);
}

void Canvas::DrawDot(Point centre, double diameter_px, Colour colour) {
  DrawLine(centre, centre, diameter_px, colour);
}

void Canvas::DrawStrokes(std::span<const Polyline> strokes, double width_px, Colour colour,
                         double opacity) {
  for (const auto& [points, is_closed] : strokes) {
    for (std::size_t i = 1; i < points.size(); ++i)
      CoverSegment(OnCanvas(points[i - 1]), OnCanvas(points[i]), width_px);
    if (is_closed && points.size() > 2)
      CoverSegment(OnCanvas(points.back()), OnCanvas(points.front()), width_px);
  }
  PaintCovered(colour, opacity);
}

void Canvas::FillRectangle(int x, int y, int width, int height, Colour colour, double opacity) {
  const int right = std::min(x + width, width_);
  const int bottom = std::min(y + height, height_);
  for (int row = std::max(y, 0); row < bottom; ++row) {
    for (int column = std::max(x, 0); column < right; ++column)
      Blend(static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                static_cast<std::size_t>(column),
            colour, opacity);
  }
}

void Canvas::DrawText(double x, double y, double height_px, std::string_view text, Colour colour) {
  const double width_px = std::max(1.0, height_px / 7);
  for (const char32_t c : CharactersOf(text)) {
    const Glyph glyph = GlyphOf(c);
    for (const std::vector<Point>& stroke : glyph.strokes) {
      for (std::size_t i = 0; i < stroke.size(); ++i) {
        const Point from = stroke[i == 0 ? 0 : i - 1];
        CoverSegment(Point{x, y} + height_px * from, Point{x, y} + height_px * stroke[i], width_px);
      }
    }
    x += height_px * glyph.advance;
  }
  PaintCovered(colour);
}

double Canvas::TextWidth(std::string_view text, double height_px) {
  double width = 0;
  for (const char32_t c : CharactersOf(text))
    width += GlyphOf(c).advance;
  return height_px * width;
}

std::string Canvas::EncodePng() const {
  return EncodeRgbPng(rgb_, width_, height_);
}

void Canvas::CoverSegment(Point from, Point to, double width_px) {
  if (!IsNear(from) || !IsNear(to)) return;
  const int num_pieces = 1 + static_cast<int>(Distance(from, to) / kPieceLength);
  const auto at = [&](int i) {
    const double t = static_cast<double>(i) / num_pieces;
    return Point{from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
  };
  for (int i = 0; i < num_pieces; ++i)
    CoverPiece(at(i), at(i + 1), width_px);
}

void Canvas::CoverPiece(Point from, Point to, double width_px) {
  const double reach = width_px / 2 + 1;
  const int left = std::max(static_cast<int>(std::min(from.x, to.x) - reach), 0);
  const int right = std::min(static_cast<int>(std::max(from.x, to.x) + reach), width_ - 1);
  const int top = std::max(static_cast<int>(std::min(from.y, to.y) - reach), 0);
  const int bottom = std::min(static_cast<int>(std::max(from.y, to.y) + reach), height_ - 1);
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) {
      const double distance = DistanceToSegment({x + 0.5, y + 0.5}, from, to);
      Cover(x, y, std::clamp(width_px / 2 + 0.5 - distance, 0.0, 1.0));
    }
  }
}

void Canvas::Cover(int x, int y, double coverage) {
  const std::size_t pixel =
      static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
  const auto value = static_cast<float>(coverage);
  if (value <= coverage_[pixel]) return;
  if (coverage_[pixel] == 0) covered_.push_back(pixel);
  coverage_[pixel] = value;
}

void Canvas::PaintCovered(Colour colour, double opacity) {
  for (const std::size_t pixel : covered_) {
    Blend(pixel, colour, opacity * static_cast<double>(coverage_[pixel]));
    coverage_[pixel] = 0;
  }
  covered_.clear();
}

void Canvas::Blend(std::size_t pixel, Colour colour, double opacity) {
  const auto mix = [&](std::uint8_t& channel, std::uint8_t value) {
    channel = ToByte(channel + opacity * (value - channel));
  };
  mix(rgb_[3 * pixel], colour.red);
  mix(rgb_[3 * pixel + 1], colour.green);
  mix(rgb_[3 * pixel + 2], colour.blue);
}

}  // namespace orvandel::cli
