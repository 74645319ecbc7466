#pragma once

#include <vector>

namespace orvandel::cli {

/// A rectangle of canvas pixels.
struct PixelBox {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  double Area() const { return right > left && bottom > top ? (right - left) * (bottom - top) : 0; }
};

/// Finds room for labels beside figures.
class LabelPlaces {
 public:
  /// @param figures  what labels should not cover.
  LabelPlaces(int canvas_width, int canvas_height, std::vector<PixelBox> figures);

  /// The place beside a figure, in the canvas, where a label of this size covers least of the
  /// figures and of the labels placed before.
  PixelBox Place(const PixelBox& figure, double width, double height);

 private:
  double Covered(const PixelBox& label) const;
  PixelBox MovedInside(PixelBox label) const;

  double canvas_width_;
  double canvas_height_;
  std::vector<PixelBox> figures_;
  std::vector<PixelBox> labels_;
};

}  // namespace orvandel::cli
