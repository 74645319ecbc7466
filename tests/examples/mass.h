#pragma once

#include "examples/render/geometry.h"
#include "platform/image_ptr.h"

namespace orvandel::render {

/// What a picture holds above its ground: the sum, and its centre as a pixel position.
struct Mass {
  double total = 0;
  Point centroid;
};

inline Mass MassOf(const ImagePtr& picture, double ground) {
  Mass mass;
  Point moment;
  for (int y = 0; y < picture->height; ++y) {
    for (int x = 0; x < picture->width; ++x) {
      const double value = picture->row[y][x] - ground;
      mass.total += value;
      moment = moment + value * Point{static_cast<double>(x), static_cast<double>(y)};
    }
  }
  mass.centroid = (1 / mass.total) * moment;
  return mass;
}

}  // namespace orvandel::render
