#include "examples/render/scene.h"

#include "examples/render/canvas.h"

namespace orvandel::render {
namespace {

ImagePtr TakeImage(const std::vector<Placement>& placements, const Imaging& imaging, Size size) {
  if (size.width < 1 || size.height < 1) return nullptr;
  Canvas canvas(size, imaging.ground);
  for (const auto& [part, pose] : placements) {
    for (const Shape& shape : part.shapes)
      canvas.Paint(shape, pose);
  }
  canvas.ScaleContrast(imaging.ground, imaging.contrast);
  canvas.Blur(imaging.blur_sigma_px);
  canvas.Dim(imaging.light_falloff, imaging.light_direction_deg);
  canvas.AddNoise(imaging.noise_sigma, imaging.seed);
  return canvas.Round();
}

void PaintSilhouette(const Placement& placement, double value, Canvas& canvas) {
  for (Shape shape : placement.part.shapes) {
    shape.fill = {value};
    canvas.Paint(shape, placement.pose);
  }
}

}  // namespace

ImagePtr RenderPattern(const Part& part, const Imaging& imaging) {
  const Pose centred{(part.frame.width - 1) / 2.0, (part.frame.height - 1) / 2.0};
  return TakeImage({{part, centred}}, imaging, part.frame);
}

ImagePtr RenderScene(const std::vector<Placement>& placements, const Imaging& imaging, Size size) {
  return TakeImage(placements, imaging, size);
}

double OccludedShare(const std::vector<Placement>& placements, std::size_t index, Size size) {
  Canvas canvas(size, 0);
  PaintSilhouette(placements[index], 1, canvas);
  const double area = canvas.Total();
  for (std::size_t i = index + 1; i < placements.size(); ++i)
    PaintSilhouette(placements[i], 0, canvas);
  return area > 0 ? 1 - canvas.Total() / area : 0;
}

}  // namespace orvandel::render
