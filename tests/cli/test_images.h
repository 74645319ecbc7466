#pragma once

#include <string>
#include <vector>

#include "base/geometry.h"
#include "examples/render/geometry.h"
#include "platform/image_ptr.h"

namespace orvandel::cli::test {

// Images of a metal bracket, whose pattern image is 220 x 180 pixels.

inline constexpr int kBracketWidth = 220;
inline constexpr int kBracketHeight = 180;

void WriteBracketPattern(const std::string& path);
/// 640 x 480; the pose is that of the pattern image's centre.
void WriteBracketScene(const std::string& path, const render::Pose& pose);
/// The same of several brackets.
void WriteBracketsScene(const std::string& path, const std::vector<render::Pose>& poses);
/// The same with bright and dark exchanged.
void WriteReversedScene(const std::string& path, const render::Pose& pose);
/// A bracket and a cam, which is round.
void WriteMixedScene(const std::string& path, const render::Pose& bracket, const render::Pose& cam);
void WriteCamPattern(const std::string& path);
/// A nut of six sides: turning it by 60 degrees changes nothing.
void WriteNutPattern(const std::string& path);
void WriteNutScene(const std::string& path, const render::Pose& pose);
/// Pattern (its centre is the ring's) and scene of an eccentric ring in 16 bits, so faint that 8
/// bits would hold one grey value. The files are PNG.
void WriteDeepRings(const std::string& pattern_path, const std::string& scene_path, Point centre);
/// A scene of other parts.
void WriteOtherScene(const std::string& path);

/// One grey value everywhere.
void WriteFlatImage(const std::string& path, int width, int height);
/// A disc: a contour without a straight edge, as its radius is small.
void WriteDisc(const std::string& path, double radius);
/// Where a box has its sides, pixels; the top-left pixel covers 0 to 1.
struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};
/// A bright box on dark ground. Pixels at its sides are as bright as it covers them.
void WriteBox(const std::string& path, int width, int height, const Box& box);
/// Rows and columns of such boxes, each a closed contour.
void WriteBoxes(const std::string& path, int columns, int rows);
/// A binary PPM of a grey wedge.
void WriteColourImage(const std::string& path, int width, int height);

/// The image in a file.
ImagePtr ReadBack(const std::string& path);

}  // namespace orvandel::cli::test
