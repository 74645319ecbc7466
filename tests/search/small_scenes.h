#pragma once

#include <cstdint>
#include <vector>

#include "examples/render/scene.h"
#include "tests/support/images.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {

// Small images, quick to search even under the sanitizers. The ground is 50, parts are lighter.

inline render::Part PartOf(const render::Outline& outline, render::Size frame, double grey = 180) {
  return {{{outline, {}, {grey, 0, 0}}}, frame};
}

/// Seven straight sides, no two alike; no rotation maps it onto itself. 68 x 50 in 100 x 80.
inline render::Part SmallPart() {
  return PartOf({{-34, -24}, {20, -24}, {34, -8}, {34, 2}, {-6, 6}, {-6, 26}, {-34, 20}},
                {100, 80});
}

/// Three straight sides.
inline render::Part Triangle() {
  return PartOf({{-30, -20}, {34, -6}, {-16, 24}}, {100, 80});
}

/// A disc so small that no stretch of its edge is straight: a chord of six pixels passes
/// 9 / (2 * radius) = 0.45 pixels inside the arc, and 0.25 is the limit.
inline render::Part CurvedPart() {
  return PartOf(render::Circle({0, 0}, 10), {60, 50});
}

inline ImagePtr ImageOf(const render::Part& part) {
  return render::RenderPattern(part);
}

inline ImagePtr UniformImage(int width = 60, int height = 50) {
  return MakeImage(width, height, [](int, int) { return 128; });
}

/// A scene of one part, 180 x 150.
/// Where the part lies in most scenes.
inline constexpr render::Pose kRotated{.x = 92, .y = 71, .angle_deg = 35};

inline ImagePtr SceneOf(const render::Part& part, const render::Pose& pose) {
  return render::RenderScene({{part, pose}}, {}, {180, 150});
}

/// A noisy scene of the part somewhere, with other things around and over it, 180 x 150.
inline ImagePtr RandomScene(UniformRandom& random, const render::Part& part) {
  std::vector<render::Placement> placements;
  const int num_things = random.Integer(0, 6);
  for (int i = 0; i < num_things; ++i) {
    const double grey = random.Real(90, 230);
    const render::Outline outline =
        random.OneIn(2) ? render::Rectangle({0, 0}, random.Real(8, 60), random.Real(8, 60))
                        : render::Circle({0, 0}, random.Real(5, 30));
    placements.push_back(
        {PartOf(outline, {}, grey),
         {.x = random.Real(0, 180), .y = random.Real(0, 150), .angle_deg = random.Real(0, 360)}});
  }
  const std::size_t place = static_cast<std::size_t>(random.Integer(0, num_things));
  placements.insert(placements.begin() + static_cast<std::ptrdiff_t>(place),
                    {part,
                     {.x = random.Real(50, 130),
                      .y = random.Real(45, 105),
                      .angle_deg = random.Real(0, 360),
                      .scale = random.Real(0.6, 1.5)}});
  render::Imaging imaging;
  imaging.contrast = random.Real(0.4, 1.3);
  imaging.noise_sigma = random.OneIn(2) ? 0 : random.Real(0, 8);
  imaging.seed = static_cast<std::uint64_t>(random.Integer(1, 1000000));
  return render::RenderScene(placements, imaging, {180, 150});
}

}  // namespace orvandel::test
