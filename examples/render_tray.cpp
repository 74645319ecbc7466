// Makes the scene that the demonstration looks into: a tray of brackets and round cams at several
// scales and rotations among other parts, the two patterns, and a suite for each with the true poses.
//
//   orvandel_render_tray DIR     writes DIR/bracket.png, DIR/cam.png, DIR/tray.png and
//                                DIR/brackets/manifest.csv, DIR/cams/manifest.csv

#include <cstdio>
#include <exception>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "examples/render/parts.h"
#include "platform/atomic_file.h"

namespace orvandel::render {
namespace {

constexpr Imaging kPatternImaging{.blur_sigma_px = 0.6, .noise_sigma = 1.5, .seed = 3};
constexpr Imaging kTrayImaging{.blur_sigma_px = 0.8,
                               .light_falloff = 0.3,
                               .light_direction_deg = 25,
                               .noise_sigma = 3,
                               .seed = 21};
constexpr Size kTraySize{1024, 768};

const std::vector<Pose> kBrackets = {{170.3, 150.8, 24.7, 1.05},
                                     {552.6, 158.2, -141.3, 0.70},
                                     {846.9, 566.4, 73.6, 1.30},
                                     {250.4, 628.1, -62.2, 0.85}};
const std::vector<Pose> kCams = {{842.7, 176.5, -38.4, 1.20},
                                 {512.8, 412.9, 118.9, 0.90},
                                 {128.1, 392.6, 171.5, 0.65},
                                 {560.2, 652.3, 12.6, 1.10}};

/// What lies beside them.
std::vector<Placement> Clutter() {
  return {{Gear(), {372.0, 300.0, 7, 0.9}},       {Rod(230, 14), {706.0, 330.0, -58, 1}},
          {Rod(150, 10), {395.0, 505.0, 20, 1}},  {Plate(130, 84), {352.0, 96.0, 33, 0.8}},
          {HexNut(52), {684.0, 90.0, 12, 1}},     {HexNut(38), {968.0, 372.0, 41, 1}},
          {Washer(30, 14), {698.0, 480.0, 0, 1}}, {Washer(22, 9), {64.0, 520.0, 0, 1}},
          {Washer(17, 8), {455.0, 58.0, 0, 1}},   {Plate(96, 62), {60.0, 700.0, -20, 1}},
          {HexNut(44), {404.0, 716.0, 3, 1}},     {Washer(26, 11), {230.0, 268.0, 0, 1}},
          {Gear(), {990.0, 742.0, 20, 0.7}},      {Rod(120, 18), {690.0, 720.0, 75, 1}}};
}

/// What lies on top of a bracket and of a cam.
std::vector<Placement> OnTop() {
  return {{Rod(170, 12), {872.0, 640.0, 8, 1}}, {Washer(17, 8), {586.0, 690.0, 0, 1}}};
}

std::string ManifestOf(const std::string& name, const std::string& pattern,
                       const std::vector<Pose>& poses) {
  std::string manifest = "case,pattern,scene,instance,cx,cy,angle_deg,scale\n";
  int instance = 0;
  for (const Pose& pose : poses) {
    char row[160];
    std::snprintf(row, sizeof row, "%s,../%s,../tray.png,%d,%.2f,%.2f,%.2f,%.3f\n", name.c_str(),
                  pattern.c_str(), instance++, pose.x, pose.y, pose.angle_deg, pose.scale);
    manifest += row;
  }
  return manifest;
}

std::vector<Placement> TrayParts() {
  std::vector<Placement> parts = Clutter();
  for (const Pose& pose : kBrackets)
    parts.push_back({MetalBracket(), pose});
  for (const Pose& pose : kCams)
    parts.push_back({Cam(), pose});
  for (const Placement& placement : OnTop())
    parts.push_back(placement);
  return parts;
}

/// The image library takes UTF-8 on every platform.
std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void WriteImage(const ImagePtr& image, const std::filesystem::path& path) {
  if (im_file_write(image.get(), Utf8(path).c_str(), 0) != 0)
    throw std::runtime_error("cannot write " + Utf8(path));
}

/// With parameters that say that the parts have no symmetry, so that what counts as found goes by
/// the scale.
void WriteSuite(const std::string& name, const std::string& pattern, const std::vector<Pose>& poses,
                const std::filesystem::path& folder) {
  const auto write = [&](const char* file, const std::string& text) {
    const std::error_code error =
        WriteFileAtomically(folder / file, std::as_bytes(std::span<const char>(text)));
    if (error) throw std::runtime_error("cannot write " + Utf8(folder / file));
  };
  std::filesystem::create_directories(folder);
  write("params.csv", "case,params\n" + name + ",symmetry=1\n");
  write("manifest.csv", ManifestOf(name, pattern, poses));
}

void WriteTray(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  WriteImage(RenderPattern(MetalBracket(), kPatternImaging), folder / "bracket.png");
  WriteImage(RenderPattern(Cam(), kPatternImaging), folder / "cam.png");
  WriteImage(RenderScene(TrayParts(), kTrayImaging, kTraySize), folder / "tray.png");
  WriteSuite("brackets", "bracket.png", kBrackets, folder / "brackets");
  WriteSuite("cams", "cam.png", kCams, folder / "cams");
}

}  // namespace
}  // namespace orvandel::render

int main(int argc, char** argv) {
  constexpr char kUsage[] =
      "usage: orvandel_render_tray DIR\n"
      "Writes a scene with several parts into DIR, their patterns, and suites of their true "
      "poses.\n";
  const std::string_view argument = argc == 2 ? argv[1] : "";
  if (argument == "--help" || argument == "-h") {
    std::fputs(kUsage, stdout);
    return 0;
  }
  if (argument.empty() || argument.front() == '-') {
    std::fputs(kUsage, stderr);
    return 2;
  }
  try {
    orvandel::render::WriteTray(argument);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvandel_render_tray: %s\n", error.what());
    return 2;
  }
  return 0;
}
