#include "tests/cli/test_images.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/image_file.h"
#include "examples/render/parts.h"
#include "examples/render/scene.h"
#include "tests/cli/tool_run.h"
#include "tests/support/grey16_png.h"
#include "tests/support/images.h"

namespace orvandel::cli::test {
namespace {

void Write(const ImagePtr& image, const std::string& path) {
  ASSERT_NE(image, nullptr);
  ASSERT_EQ(im_file_write(image.get(), path.c_str(), 0), 0) << path;
}

// Share of a pixel that a disc around the origin covers, from its centre's distance to the rim.
double DiscCoverage(double x, double y, double radius) {
  return std::clamp(radius - std::hypot(x, y) + 0.5, 0.0, 1.0);
}

// Length of the part of [pixel, pixel + 1] that lies in [from, to].
double Overlap(int pixel, double from, double to) {
  return std::max(0.0, std::min(pixel + 1.0, to) - std::max<double>(pixel, from));
}

// A disc with a hole out of its middle, so that its rotation is known; 0 to 1.
double EccentricRing(double x, double y) {
  return DiscCoverage(x, y, 26) - DiscCoverage(x - 9, y - 4, 9);
}

// A square image whose values lie within 200 of 65536, all of them one step of 8 bits.
void WriteDeepRing(const std::string& path, int size, Point centre) {
  std::vector<std::vector<int>> rows;
  for (int y = 0; y < size; ++y) {
    rows.emplace_back();
    for (int x = 0; x < size; ++x)
      rows.back().push_back(
          static_cast<int>(std::lround(20 + 180 * EccentricRing(x - centre.x, y - centre.y))));
  }
  WriteBytes(path, orvandel::test::Grey16Png(rows));
}

}  // namespace

void WriteDeepRings(const std::string& pattern_path, const std::string& scene_path, Point centre) {
  WriteDeepRing(pattern_path, 81, {40, 40});
  WriteDeepRing(scene_path, 170, centre);
}

void WriteBracketPattern(const std::string& path) {
  Write(render::RenderPattern(render::MetalBracket(), {.blur_sigma_px = 0.6}), path);
}

void WriteBracketScene(const std::string& path, const render::Pose& pose) {
  Write(render::RenderScene({{render::MetalBracket(), pose}}, {.blur_sigma_px = 0.6}, {640, 480}),
        path);
}

void WriteBracketsScene(const std::string& path, const std::vector<render::Pose>& poses) {
  std::vector<render::Placement> placements;
  for (const render::Pose& pose : poses)
    placements.push_back({render::MetalBracket(), pose});
  Write(render::RenderScene(placements, {.blur_sigma_px = 0.6}, {640, 480}), path);
}

void WriteReversedScene(const std::string& path, const render::Pose& pose) {
  const ImagePtr scene =
      render::RenderScene({{render::MetalBracket(), pose}}, {.blur_sigma_px = 0.6}, {640, 480});
  ASSERT_NE(scene, nullptr);
  Write(orvandel::test::MakeImage(640, 480, [&](int x, int y) { return 255 - scene->row[y][x]; }),
        path);
}

void WriteMixedScene(const std::string& path, const render::Pose& bracket,
                     const render::Pose& cam) {
  Write(render::RenderScene({{render::MetalBracket(), bracket}, {render::Cam(), cam}},
                            {.blur_sigma_px = 0.6}, {640, 480}),
        path);
}

void WriteCamPattern(const std::string& path) {
  Write(render::RenderPattern(render::Cam(), {.blur_sigma_px = 0.6}), path);
}

void WriteNutPattern(const std::string& path) {
  Write(render::RenderPattern(render::HexNut(90), {.blur_sigma_px = 0.6}), path);
}

void WriteNutScene(const std::string& path, const render::Pose& pose) {
  Write(render::RenderScene({{render::HexNut(90), pose}}, {.blur_sigma_px = 0.6}, {640, 480}),
        path);
}

void WriteOtherScene(const std::string& path) {
  Write(render::RenderScene({{render::Gear(), {.x = 150, .y = 200}},
                             {render::HexNut(60), {.x = 400, .y = 120, .angle_deg = 10}},
                             {render::Washer(40, 20), {.x = 450, .y = 350}}},
                            {.blur_sigma_px = 0.6}, {640, 480}),
        path);
}

void WriteFlatImage(const std::string& path, int width, int height) {
  Write(orvandel::test::MakeImage(width, height, [](int, int) { return 90; }), path);
}

void WriteDisc(const std::string& path, double radius) {
  constexpr int kSize = 64;
  const auto grey = [radius](int x, int y) {
    const double share = DiscCoverage(x - kSize / 2.0, y - kSize / 2.0, radius);
    return static_cast<int>(std::lround(40 + 180 * share));
  };
  Write(orvandel::test::MakeImage(kSize, kSize, grey), path);
}

void WriteBox(const std::string& path, int width, int height, const Box& box) {
  const auto grey = [&box](int x, int y) {
    const double share = Overlap(x, box.left, box.right) * Overlap(y, box.top, box.bottom);
    return static_cast<int>(std::lround(50 + 150 * share));
  };
  Write(orvandel::test::MakeImage(width, height, grey), path);
}

void WriteBoxes(const std::string& path, int columns, int rows) {
  constexpr int kPitch = 24;
  constexpr double kFrom = 6.3;
  constexpr double kTo = 18.4;
  const auto grey = [](int x, int y) {
    const double share = Overlap(x % kPitch, kFrom, kTo) * Overlap(y % kPitch, kFrom, kTo);
    return static_cast<int>(std::lround(50 + 150 * share));
  };
  Write(orvandel::test::MakeImage(columns * kPitch, rows * kPitch, grey), path);
}

void WriteColourImage(const std::string& path, int width, int height) {
  std::string file = "P6\n" + std::to_string(width) + " " + std::to_string(height) + "\n255\n";
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const char red = x > width / 3 && y > height / 3 ? '\x7F' : '\x10';
      file += {red, '\x20', '\x30'};
    }
  }
  WriteBytes(path, file);
}

ImagePtr ReadBack(const std::string& path) {
  return evaluation::ReadImage(path).image;
}

}  // namespace orvandel::cli::test
