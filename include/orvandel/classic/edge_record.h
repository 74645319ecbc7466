#pragma once

#include <cstdint>

#include "orvandel/classic/export.h"

/// Per pixel of the last crawled image: the sub-pixel edge point found there, and whether there is
/// one.
///
/// Cells lie row by row; the cell of column c, row r is width * r + c. The centre of the pixel in
/// column c, row r is about (c + 0.5, r + 0.5). Copying is not offered: the record owns its four
/// arrays.
class ORVANDEL_API CEdgeImgComplement {
 public:
  CEdgeImgComplement();
  virtual ~CEdgeImgComplement();
  CEdgeImgComplement(const CEdgeImgComplement&) = delete;
  CEdgeImgComplement& operator=(const CEdgeImgComplement&) = delete;

  /// Sizes the record and clears `valid`. The size that it has already keeps arrays and contents.
  ///
  /// @param new_width,new_height  pixels.
  /// @return  0, or 1 when memory cannot be had; then the record is empty, 0 x 0.
  int SetSize(int new_width, int new_height);

  /// Stores an edge point in the cell of the pixel that holds (x, y), over an earlier one.
  ///
  /// @param point_x,point_y  position in pixels; truncated toward zero for the cell. Outside the
  ///                         grid nothing is stored.
  /// @param direction        gradient direction in radians.
  void Store(double point_x, double point_y, double direction);

  /// Clears `valid` and stores every point of every contour of a set.
  ///
  /// @param contours  a `ctd_` handle.
  /// @return  the set's number of contours.
  int Refill(void* contours);

  double* x;  ///< sub-pixel x; meaningful where `valid` is set
  double* y;  ///< sub-pixel y
  double* g;  ///< gradient direction in radians, [-pi, pi): the vector (cos g, -sin g), y down
  std::uint8_t* valid;    ///< 1 where a point is stored, else 0
  std::int32_t count;     ///< stores since construction, modulo 2^32; never reset
  std::int32_t width;     ///< pixels
  std::int32_t height;    ///< pixels
  std::int32_t map_size;  ///< width * height, the length of `valid` in bytes
};
