#include "evaluation/cluttered_scenes.h"

#include <algorithm>
#include <vector>

#include "evaluation/uniform_random.h"
#include "examples/render/parts.h"

namespace orvandel::evaluation {
namespace {

render::Part RandomPart(UniformRandom& random) {
  switch (random.Integer(0, 4)) {
    case 0:
      return render::Gear();
    case 1:
      return render::Plate(random.Real(60, 160), random.Real(50, 100));
    case 2:
      return render::Rod(random.Real(80, 240), random.Real(8, 20));
    case 3:
      return render::Washer(random.Real(18, 34), random.Real(6, 14));
    default:
      return render::HexNut(random.Real(30, 56));
  }
}

/// Anywhere in the image, but `margin` pixels away from its border.
render::Pose RandomPose(UniformRandom& random, render::Size size, double margin) {
  render::Pose pose;
  pose.x = random.Real(margin, std::max(size.width - margin, margin + 1));
  pose.y = random.Real(margin, std::max(size.height - margin, margin + 1));
  pose.angle_deg = random.Real(-180, 180);
  pose.scale = random.Real(0.7, 1.3);
  return pose;
}

}  // namespace

ImagePtr Render(const ClutteredScene& scene) {
  constexpr double kBracketMargin = 120;  // half its diagonal at scale 1
  UniformRandom random(scene.seed);
  std::vector<render::Placement> placements;
  for (int i = 0; i < scene.num_parts; ++i) {
    // One part in four may cover the bracket.
    if (i == scene.num_parts * 3 / 4) {
      placements.push_back(
          {render::MetalBracket(), RandomPose(random, scene.size, kBracketMargin)});
    }
    placements.push_back({RandomPart(random), RandomPose(random, scene.size, 0)});
  }
  render::Imaging imaging;
  imaging.blur_sigma_px = 0.7;
  imaging.light_falloff = 0.2;
  imaging.noise_sigma = scene.noise_sigma;
  imaging.seed = scene.seed;
  return render::RenderScene(placements, imaging, scene.size);
}

ImagePtr BracketPattern() {
  render::Imaging imaging;
  imaging.blur_sigma_px = 0.6;
  imaging.noise_sigma = 1.5;
  return render::RenderPattern(render::MetalBracket(), imaging);
}

int PartsForSize(render::Size size) {
  constexpr double kPixelsPerPart = 25000;
  return std::max(1,
                  static_cast<int>(size.width * static_cast<double>(size.height) / kPixelsPerPart));
}

}  // namespace orvandel::evaluation
