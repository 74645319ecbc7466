#include "cli/label_places.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orvandel::cli {
namespace {

constexpr double kGap = 6;  // pixels between a figure and its label

/// A label over a label cannot be read; one over a figure hides a part of it.
constexpr double kLabelWeight = 5;

double CommonArea(const PixelBox& a, const PixelBox& b) {
  return PixelBox{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                  std::min(a.bottom, b.bottom)}
      .Area();
}

/// Round the figure, the likeliest places first: at its right, its left, below and above it.
std::vector<PixelBox> PlacesBeside(const PixelBox& figure, double width, double height) {
  const double middle_x = (figure.left + figure.right - width) / 2;
  const double middle_y = (figure.top + figure.bottom - height) / 2;
  const double at_right = figure.right + kGap;
  const double at_left = figure.left - kGap - width;
  const double below = figure.bottom + kGap;
  const double above = figure.top - kGap - height;
  const std::pair<double, double> corners[] = {
      {at_right, middle_y},   {at_left, middle_y},
      {middle_x, below},      {middle_x, above},
      {at_right, figure.top}, {at_right, figure.bottom - height},
      {at_left, figure.top},  {at_left, figure.bottom - height},
      {figure.left, below},   {figure.right - width, below},
      {figure.left, above},   {figure.right - width, above},
      {at_right, above},      {at_right, below},
      {at_left, above},       {at_left, below}};
  std::vector<PixelBox> places;
  for (const auto& [x, y] : corners)
    places.push_back({x, y, x + width, y + height});
  return places;
}

}  // namespace

LabelPlaces::LabelPlaces(int canvas_width, int canvas_height, std::vector<PixelBox> figures)
    : canvas_width_(canvas_width), canvas_height_(canvas_height), figures_(std::move(figures)) {}

PixelBox LabelPlaces::Place(const PixelBox& figure, double width, double height) {
  PixelBox best;
  double least = std::numeric_limits<double>::max();
  for (const PixelBox& beside : PlacesBeside(figure, width, height)) {
    const PixelBox place = MovedInside(beside);
    const double covered = Covered(place);
    if (covered >= least) continue;
    least = covered;
    best = place;
  }
  labels_.push_back(best);
  return best;
}

double LabelPlaces::Covered(const PixelBox& label) const {
  double covered = 0;
  for (const PixelBox& figure : figures_)
    covered += CommonArea(label, figure);
  for (const PixelBox& other : labels_)
    covered += kLabelWeight * CommonArea(label, other);
  return covered;
}

PixelBox LabelPlaces::MovedInside(PixelBox label) const {
  const double width = label.right - label.left;
  const double height = label.bottom - label.top;
  label.left = std::max(0.0, std::min(label.left, canvas_width_ - width));
  label.top = std::max(0.0, std::min(label.top, canvas_height_ - height));
  return {label.left, label.top, label.left + width, label.top + height};
}

}  // namespace orvandel::cli
