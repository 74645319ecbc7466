#pragma once

#include "examples/render/geometry.h"
#include "platform/image_ptr.h"

namespace orvandel::render {

/// What an image holds above its ground: the sum, and its centre as a pixel position.
struct Mass {
  double total = 0;
  Point centroid;
};

inline Mass MassOf(const ImagePtr& image, double ground) {
  Mass mass;
  Point moment;
  for (int y = 0; y < image->height; ++y) {
    for (int x = 0; x < image->width; ++x) {
      const double value = image->row[y][x] - ground;
      mass.total += value;
      moment = moment + value * Point{static_cast<double>(x), static_cast<double>(y)};
    }
  }
  mass.centroid = (1 / mass.total) * moment;
  return mass;
}

}  // namespace orvandel::render
