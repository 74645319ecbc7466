/* An L-shaped part, drawn with smooth edges at a pose of one's choice. For hosts in C99 and C++. */

#ifndef ORVANDEL_TESTS_API_DRAWN_PART_H
#define ORVANDEL_TESTS_API_DRAWN_PART_H

#include <math.h>
#include <stdint.h>

enum { kPatternWidth = 120, kPatternHeight = 100 };

/* Whether a point lies in the L, in pixels from its image's centre. */
static inline int is_in_part(double x, double y) {
  const int in_foot = x > -40 && x < 42 && y > 12 && y < 34;
  const int in_leg = x > -40 && x < -14 && y > -35 && y < 34;
  return in_foot || in_leg;
}

/* Grey value of a pixel of which the part at a pose covers a share: bright on dark. */
static inline double part_grey(int column, int row, double x, double y, double angle,
                               double scale) {
  const int steps = 8; /* each way in a pixel */
  const double c = cos(angle) / scale, s = sin(angle) / scale;
  int inside = 0;
  for (int i = 0; i < steps * steps; ++i) {
    const double dx = column + (i % steps + 0.5) / steps - 0.5 - x;
    const double dy = row + (i / steps + 0.5) / steps - 0.5 - y;
    inside += is_in_part(c * dx + s * dy, -s * dx + c * dy);
  }
  return 50 + 150.0 * inside / (steps * steps);
}

static inline void draw_part_8(uint8_t* pixels, int width, int height, double x, double y,
                               double angle, double scale) {
  for (int i = 0; i < width * height; ++i)
    pixels[i] = (uint8_t)(part_grey(i % width, i / width, x, y, angle, scale) + 0.5);
}

/* With 200 times the grey values. */
static inline void draw_part_16(uint16_t* pixels, int width, int height, double x, double y,
                                double angle, double scale) {
  for (int i = 0; i < width * height; ++i)
    pixels[i] = (uint16_t)(200 * part_grey(i % width, i / width, x, y, angle, scale) + 0.5);
}

#endif
