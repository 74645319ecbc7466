#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometry.h"
#include "cli/polyline.h"
#include "orvandel/classic/imgutil_i.h"

namespace orvandel::cli {

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
};

/// The i-th of a row of colours in which neighbours differ well.
Colour DistinctColour(int i);

/// A colour image to draw on, anti-aliased. Positions are those of the image that it was made
/// from, whatever the zoom; widths are pixels of the canvas. What lies outside is cut off.
class Canvas {
 public:
  /// @param image       8-bit grey; only read.
  /// @param zoom        canvas pixels an image pixel, 1 and more.
  /// @param brightness  of the ground, 0 black to 1 as it is.
  Canvas(const tImage& image, int zoom, double brightness);

  int width() const { return width_; }
  int height() const { return height_; }

  void DrawLine(Point from, Point to, double width_px, Colour colour);
  void DrawPolyline(std::span<const Point> points, bool closed, double width_px, Colour colour);
  void DrawDot(Point centre, double diameter_px, Colour colour);
  /// Strokes as one figure: where they meet or cross, nothing is painted twice.
  void DrawStrokes(std::span<const Polyline> strokes, double width_px, Colour colour,
                   double opacity = 1);

  // Canvas pixels, for captions and frames.

  /// A rectangle that lets the ground through: 0 leaves it, 1 covers it.
  void FillRectangle(int x, int y, int width, int height, Colour colour, double opacity);
  /// A line of UTF-8 text in the characters of the stroke font.
  ///
  /// @param x, y       top left of the first capital.
  /// @param height_px  of capitals.
  void DrawText(double x, double y, double height_px, std::string_view text, Colour colour);
  static double TextWidth(std::string_view text, double height_px);

  int zoom() const { return static_cast<int>(zoom_); }

  /// The canvas as a PNG file. Throws std::bad_alloc when memory is short.
  std::string EncodePng() const;

 private:
  void CoverSegment(Point from, Point to, double width_px);
  void CoverPiece(Point from, Point to, double width_px);
  void Cover(int x, int y, double coverage);
  void PaintCovered(Colour colour, double opacity = 1);
  void Blend(std::size_t pixel, Colour colour, double opacity);
  Point OnCanvas(Point p) const { return {p.x * zoom_, p.y * zoom_}; }

  int width_;
  int height_;
  double zoom_;
  std::vector<std::uint8_t> rgb_;
  // What the figure being drawn covers. Painting it only when it is whole keeps the joints of
  // a polyline from being blended twice.
  std::vector<float> coverage_;
  std::vector<std::size_t> covered_;
};

}  // namespace orvandel::cli
