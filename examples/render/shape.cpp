#include "examples/render/shape.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace orvandel::render {
namespace {

/// Appends the shorter arc between two unit vectors, without its end point. Halving the arc needs
/// no angles, so every platform gets the same points.
void AppendArc(Point centre, double radius, Point from, Point to, Outline& outline) {
  const Point middle = Normalized(from + to);
  const double sagitta = radius * (1.0 - Dot(from, middle));
  if (sagitta <= kFlatness) {
    outline.push_back(centre + radius * from);
    return;
  }
  AppendArc(centre, radius, from, middle, outline);
  AppendArc(centre, radius, middle, to, outline);
}

/// Appends an arc of any length in pieces of at most a quarter turn, its end point included.
void AppendArcBetween(Point centre, double radius, double from_deg, double to_deg,
                      Outline& outline) {
  double start_deg = from_deg;
  while (start_deg < to_deg) {
    const double end_deg = std::min(start_deg + 90.0, to_deg);
    AppendArc(centre, radius, Direction(start_deg), Direction(end_deg), outline);
    start_deg = end_deg;
  }
  outline.push_back(centre + radius * Direction(to_deg));
}

void AppendCorner(Point before, const Corner& corner, Point after, Outline& outline) {
  if (corner.radius <= 0.0) {
    outline.push_back(corner.at);
    return;
  }
  const Point backward = Normalized(before - corner.at);
  const Point forward = Normalized(after - corner.at);
  const double cosine = Dot(backward, forward);  // of the angle between the two sides
  const double half_tangent = std::sqrt((1.0 - cosine) / (1.0 + cosine));
  const double half_sine = std::sqrt((1.0 - cosine) / 2.0);
  const Point centre = corner.at + (corner.radius / half_sine) * Normalized(backward + forward);
  const Point arc_start = corner.at + (corner.radius / half_tangent) * backward;
  const Point arc_end = corner.at + (corner.radius / half_tangent) * forward;
  AppendArc(centre, corner.radius, Normalized(arc_start - centre), Normalized(arc_end - centre),
            outline);
  outline.push_back(arc_end);
}

/// The element before or after index i on a closed list.
template <typename List>
const auto& Before(const List& list, std::size_t i) {
  return list[i == 0 ? list.size() - 1 : i - 1];
}
template <typename List>
const auto& After(const List& list, std::size_t i) {
  return list[i + 1 == list.size() ? 0 : i + 1];
}

}  // namespace

Outline Rectangle(Point centre, double width, double height) {
  const Point across{width / 2, 0};
  const Point down{0, height / 2};
  return {centre - across - down, centre + across - down, centre + across + down,
          centre - across + down};
}

Outline RoundedPolygon(const std::vector<Corner>& corners) {
  Outline outline;
  for (std::size_t i = 0; i < corners.size(); ++i)
    AppendCorner(Before(corners, i).at, corners[i], After(corners, i).at, outline);
  return outline;
}

std::vector<Corner> Inset(const std::vector<Corner>& corners, double distance) {
  std::vector<Corner> inset;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const Point incoming = Normalized(corners[i].at - Before(corners, i).at);
    const Point outgoing = Normalized(After(corners, i).at - corners[i].at);
    // Where the two sides, each moved inwards by `distance`, meet.
    const Point inwards = QuarterTurn(incoming) + QuarterTurn(outgoing);
    const Point at = corners[i].at + (distance / (1.0 + Dot(incoming, outgoing))) * inwards;
    const double shrinking = Cross(incoming, outgoing) > 0 ? distance : -distance;
    const double radius = corners[i].radius > 0 ? std::max(corners[i].radius - shrinking, 0.0) : 0;
    inset.push_back({at, radius});
  }
  return inset;
}

Outline Circle(Point centre, double radius) {
  Outline outline;
  AppendArcBetween(centre, radius, 0, 360, outline);
  outline.pop_back();  // the start, met again
  return outline;
}

Outline Bar(Point from, Point to, double thickness) {
  const Point aside = (thickness / 2) * QuarterTurn(Normalized(to - from));
  return {from - aside, to - aside, to + aside, from + aside};
}

Outline Slot(Point from, Point to, double radius) {
  const Point along = Normalized(to - from);
  const Point aside = QuarterTurn(along);
  const Point back = -1.0 * along;
  const Point other_side = -1.0 * aside;
  Outline outline;
  AppendArc(to, radius, other_side, along, outline);
  AppendArc(to, radius, along, aside, outline);
  outline.push_back(to + radius * aside);
  AppendArc(from, radius, aside, back, outline);
  AppendArc(from, radius, back, other_side, outline);
  outline.push_back(from + radius * other_side);
  return outline;
}

Outline ArcBand(Point centre, double radius, double thickness, double from_deg, double to_deg) {
  Outline outline;
  AppendArcBetween(centre, radius + thickness / 2, from_deg, to_deg, outline);
  Outline inner;
  AppendArcBetween(centre, radius - thickness / 2, from_deg, to_deg, inner);
  std::copy(inner.rbegin(), inner.rend(), std::back_inserter(outline));
  return outline;
}

double SignedArea(const Outline& outline) {
  double doubled = 0;
  for (std::size_t i = 0; i < outline.size(); ++i)
    doubled += Cross(outline[i], After(outline, i));
  return doubled / 2;
}

}  // namespace orvandel::render
