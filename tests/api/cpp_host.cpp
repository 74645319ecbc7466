// A host in C++17 that knows nothing but the public header, with what it needs of the standard
// library.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "orvandel/orvandel.hpp"
#include "tests/api/drawn_part.h"

namespace {

int num_wrong = 0;

void Expect(bool condition, const char* what) {
  if (condition) return;
  std::printf("wrong: %s\n", what);
  ++num_wrong;
}

bool IsNear(double a, double b, double tolerance) {
  return std::fabs(a - b) <= tolerance;
}

void FindEdges() {
  std::vector<std::uint16_t> pixels(40 * 30);
  for (std::size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = i / 40 < 15 ? 50000 : 1000;  // bright above dark
  const std::vector<orvandel::EdgePoint> points =
      orvandel::Edges(orvandel::ImageView(pixels.data(), 40, 30));
  Expect(points.size() == 40 - 6, "a point a column but for the border");
  for (const orvandel::EdgePoint& p : points) {
    Expect(p.y == 14.5F, "y");
    Expect(IsNear(double{p.direction}, -std::acos(0.0), 1e-6), "up is the brighter side");
    Expect(p.strength == 0.375F * 49000, "strength");
  }

  orvandel::EdgeDetector detector;
  detector.Detect(orvandel::ImageView(pixels.data(), 40, 30));
  Expect(detector.Row(14).size() + detector.Row(15).size() == points.size(), "rows");
  Expect(detector.Row(-1).empty() && detector.Row(13).empty() && detector.Row(99).empty(),
         "rows without points");
}

void FindPart() {
  constexpr int kWidth = 320;
  constexpr int kHeight = 240;
  std::vector<std::uint16_t> image(kPatternWidth * kPatternHeight);
  std::vector<std::uint8_t> scene(kWidth * kHeight);
  draw_part_16(image.data(), kPatternWidth, kPatternHeight, (kPatternWidth - 1) / 2.0,
               (kPatternHeight - 1) / 2.0, 0, 1);
  draw_part_8(scene.data(), kWidth, kHeight, 140.4, 122.1, -2.1, 0.9);

  orvandel::LearnOptions learn_options;
  learn_options.origin = orvandel::Point{10, 20};
  const auto part = orvandel::Pattern::Learn(
      orvandel::ImageView(image.data(), kPatternWidth, kPatternHeight), learn_options);
  Expect(part.Width() == kPatternWidth && part.Height() == kPatternHeight, "size");
  Expect(part.Origin().x == 10 && part.Origin().y == 20, "origin");
  Expect(part.NumEdgePoints() > 100, "edge points");

  const orvandel::Pattern copy = part;
  int num_found = 0;
  for (const orvandel::Match& m : orvandel::Find(copy, {scene.data(), kWidth, kHeight})) {
    std::printf("%.3f %.3f  %.4f rad  %.5f\n", m.x, m.y, m.angle, m.scale);
    ++num_found;
    Expect(IsNear(m.angle, -2.1, 0.001) && IsNear(m.scale, 0.9, 0.001), "how it lies");
    const orvandel::Point centre =
        m.scene_from_pattern *
        orvandel::Point{(kPatternWidth - 1) / 2.0, (kPatternHeight - 1) / 2.0};
    Expect(IsNear(centre.x, 140.4, 0.05) && IsNear(centre.y, 122.1, 0.05), "where it is");
    const orvandel::Point origin = m.scene_from_pattern * part.Origin();
    Expect(IsNear(origin.x, m.x, 1e-9) && IsNear(origin.y, m.y, 1e-9), "where its origin is");
  }
  Expect(num_found == 1, "one match");

  const std::vector<std::uint8_t> empty(kWidth * kHeight, 77);
  Expect(orvandel::Find(copy, {empty.data(), kWidth, kHeight}).empty(), "nothing in nothing");
}

void MakeMistakes() {
  const std::vector<std::uint8_t> flat(64 * 64, 100);
  try {
    orvandel::Pattern::Learn(orvandel::ImageView(flat.data(), 64, 64));
    Expect(false, "a flat image cannot be learnt");
  } catch (const orvandel::Error& error) {
    Expect(error.Status() == ORV_NO_EDGES, "status of a flat image");
    Expect(std::string(error.what()).find("edges") != std::string::npos, "a sentence about it");
  }
}

}  // namespace

int main() {
  FindEdges();
  FindPart();
  MakeMistakes();
  return num_wrong == 0 ? 0 : 1;
}
