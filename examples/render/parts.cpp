#include "examples/render/parts.h"

#include <cmath>
#include <utility>

namespace orvandel::render {
namespace {

// Light falls in from the upper left of the part. It turns with the part, so that a scene shows
// exactly the pattern under a similarity.
constexpr Fill kRim{126, -0.14, -0.14};
constexpr Fill kFace{192, -0.05, -0.08};
constexpr Fill kFloor{142, 0.06, 0.10};
constexpr Fill kEngraving{112, 0, 0};

/// Width of the bevel around a face and around the holes in it, part units. Layers never share an
/// edge: a pixel cut by two layers at once would mix in too little of what lies below.
constexpr double kBevel = 6;
constexpr double kHoleBevel = 2.5;

constexpr double kFrameMargin = 16;

/// A part in a frame that leaves a margin around its extents, which are centred.
Part Framed(std::vector<Shape> shapes, double width, double height) {
  const auto padded = [](double extent) {
    return static_cast<int>(std::ceil(extent + 2 * kFrameMargin));
  };
  return {std::move(shapes), {padded(width), padded(height)}};
}

std::vector<Corner> RectangleCorners(Point centre, double width, double height, double radius) {
  std::vector<Corner> corners;
  for (const Point& at : Rectangle(centre, width, height))
    corners.push_back({at, radius});
  return corners;
}

/// Engraved lines of a scale, `spacing` apart and ending at `end`; the first and each fifth one
/// after it are longer.
void EngraveScale(Point end, double spacing, int count, std::vector<Shape>& shapes) {
  for (int i = 0; i < count; ++i) {
    const double length = i % 5 == 0 ? 15 : 9;
    const Point foot{end.x + i * spacing, end.y};
    shapes.push_back({Bar(foot - Point{0, length}, foot, 2), {}, kEngraving});
  }
}

}  // namespace

Part MetalBracket() {
  const std::vector<Corner> body = {
      {{-94, -74}, 18}, {{-18, -74}, 14}, {{-6, -42}, 12}, {{94, -8}, 12},
      {{94, 46}, 4},    {{66, 74}, 4},    {{-74, 74}, 4},  {{-94, 54}, 4},
  };
  const std::vector<Corner> pocket = RectangleCorners({12, 44}, 104, 38, 8);
  const Point bore{-54, -34};
  const Point left_bolt{-70, 44};
  const Point right_bolt{74, 12};
  const Point slot_start{-18, 44};
  const Point slot_end{42, 44};
  const double bolt_radius = 8;
  const double slot_radius = 9;

  std::vector<Shape> shapes;
  shapes.push_back({RoundedPolygon(body),
                    {Circle(bore, 20), Circle(left_bolt, bolt_radius),
                     Circle(right_bolt, bolt_radius), Slot(slot_start, slot_end, slot_radius)},
                    kRim});
  shapes.push_back({RoundedPolygon(Inset(pocket, -1)),  // reaches under the face
                    {Slot(slot_start, slot_end, slot_radius + kHoleBevel)},
                    kFloor});
  shapes.push_back({RoundedPolygon(Inset(body, kBevel)),
                    {Circle(bore, 27), Circle(left_bolt, bolt_radius + kHoleBevel),
                     Circle(right_bolt, bolt_radius + kHoleBevel), RoundedPolygon(pocket)},
                    kFace});
  shapes.push_back({ArcBand(bore, 35, 2.5, 5, 85), {}, kEngraving});
  EngraveScale({-20, 14}, 10, 7, shapes);
  return Framed(std::move(shapes), 188, 148);
}

Part Cam() {
  constexpr int kSides = 480;  // a side lies 0.001 inside the curve
  const auto rim = [](double inset) {
    Outline outline;
    for (int side = 0; side < kSides; ++side) {
      const double angle_deg = side * 360.0 / kSides;
      const double radius = 56 + 8 * Direction(angle_deg).x + 4 * Direction(2 * angle_deg + 50).x;
      outline.push_back((radius - inset) * Direction(angle_deg));
    }
    return outline;
  };
  const Point bore{-6, 2};
  std::vector<Outline> holes = {Circle(bore, 14)};
  std::vector<Outline> face_holes = {Circle(bore, 20)};
  for (const auto& [centre, radius] :
       {std::pair{Point{36, 8}, 8.0}, {Point{-18, 34}, 6.0}, {Point{4, -32}, 6.0}}) {
    holes.push_back(Circle(centre, radius));
    face_holes.push_back(Circle(centre, radius + kHoleBevel));
  }
  return Framed({{rim(0), holes, kRim},
                 {rim(kBevel), face_holes, kFace},
                 {ArcBand(bore, 27, 2.5, 200, 320), {}, kEngraving}},
                136, 126);
}

Part Gear() {
  constexpr int kTeeth = 24;
  constexpr double kPitchDeg = 360.0 / kTeeth;
  constexpr double kRootRadius = 56;
  constexpr double kTipRadius = 66;
  Outline teeth;
  for (int tooth = 0; tooth < kTeeth; ++tooth) {
    const double middle_deg = tooth * kPitchDeg;
    teeth.push_back(kRootRadius * Direction(middle_deg - 0.32 * kPitchDeg));
    teeth.push_back(kTipRadius * Direction(middle_deg - 0.16 * kPitchDeg));
    teeth.push_back(kTipRadius * Direction(middle_deg + 0.16 * kPitchDeg));
    teeth.push_back(kRootRadius * Direction(middle_deg + 0.32 * kPitchDeg));
  }
  std::vector<Outline> holes = {Circle({}, 12)};
  std::vector<Outline> face_holes = {Circle({}, 20)};
  for (int hole = 0; hole < 5; ++hole) {
    const Point centre = 35.0 * Direction(hole * 72);
    holes.push_back(Circle(centre, 9));
    face_holes.push_back(Circle(centre, 9 + kHoleBevel));
  }
  return Framed({{teeth, holes, kRim}, {Circle({}, kRootRadius - kBevel), face_holes, kFace}},
                2 * kTipRadius, 2 * kTipRadius);
}

Part Washer(double radius, double bore) {
  return Framed({{Circle({}, radius), {Circle({}, bore)}, kRim},
                 {Circle({}, radius - kHoleBevel), {Circle({}, bore + kHoleBevel)}, kFace}},
                2 * radius, 2 * radius);
}

Part HexNut(double across_flats) {
  const double radius = across_flats / 2;
  Outline hexagon;
  for (int corner = 0; corner < 6; ++corner)
    hexagon.push_back((radius / Direction(30).x) * Direction(corner * 60));
  return Framed({{hexagon, {Circle({}, radius / 2)}, kRim},
                 {Circle({}, radius - 1), {Circle({}, radius / 2 + kHoleBevel)}, kFace}},
                2.4 * radius, 2 * radius);
}

Part Rod(double length, double thickness) {
  const auto stripe = [length](double y, double width, double grey) {
    return Shape{Rectangle({0, y}, length, width), {}, {grey}};
  };
  return Framed({stripe(0, thickness, 118), stripe(-0.06 * thickness, 0.6 * thickness, 158),
                 stripe(-0.12 * thickness, 0.25 * thickness, 204)},
                length, thickness);
}

Part Plate(double width, double height) {
  const double radius = 10;
  const std::vector<Corner> body = RectangleCorners({}, width, height, radius);
  std::vector<Outline> holes;
  std::vector<Outline> face_holes;
  for (const Point& centre : Rectangle({}, width - 32, height - 32)) {
    holes.push_back(Circle(centre, 5));
    face_holes.push_back(Circle(centre, 5 + kHoleBevel));
  }
  return Framed({{RoundedPolygon(body), holes, kRim},
                 {RoundedPolygon(Inset(body, kBevel)), face_holes, kFace}},
                width, height);
}

}  // namespace orvandel::render
