#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "image/gradients.h"
#include "image/unit_image.h"

namespace orvandel {

/// Pixels from (left, top) up to, but without, (right, bottom).
struct PixelBox {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
};

/// The gradients of a plane or an image, made where somebody wants to look: of a large scene, most are never looked at. Those
/// made are those of ComputeGradients.
class PartialGradients {
 public:
  /// Starts with none. The plane is kept a reference of.
  void Start(const GreyPlane& plane);
  void Start(const UnitImage& image);

  /// Makes all within the box, as far as it lies in the plane.
  void Make(const PixelBox& box);
  void MakeAll() { Make({0, 0, plane_.width, plane_.height}); }

  /// What has not been made is of no account.
  const GradientPlane& Plane() const { return plane_; }

 private:
  /// Columns that some rows have been made in.
  struct Columns {
    std::int32_t begin = 0;
    std::int32_t end = 0;
  };

  void Start(std::int32_t width, std::int32_t height);
  void MakeRows(std::int32_t top, std::int32_t bottom, const Columns& columns);
  void FetchRow(std::int32_t y, const Columns& columns);
  const std::uint16_t* FetchedRow(std::int32_t y, std::int32_t column) const;

  const GreyPlane* grey_ = nullptr;  ///< or none, and the image
  UnitImage image_;
  GradientPlane plane_;
  std::vector<Columns> made_;                       ///< by bands of rows
  std::array<std::vector<std::uint16_t>, 3> rows_;  ///< of the image
};

}  // namespace orvandel
