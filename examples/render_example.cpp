// Makes the example that the documentation and the demonstration use: a pattern image, scenes of
// it among other parts, and a manifest with the true poses.
//
//   orvandel_render_example DIR        writes DIR/pattern.png, DIR/scenes/*.png, DIR/manifest.csv
//   orvandel evaluate DIR              measures how well the search does on it

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "examples/render/noise.h"
#include "examples/render/parts.h"
#include "platform/atomic_file.h"

namespace orvandel::render {
namespace {

constexpr Imaging kPatternImaging{.blur_sigma_px = 0.6, .noise_sigma = 1.5, .seed = 1};
constexpr Size kSceneSize{640, 480};

/// One scene: brackets over scattered clutter, and what lies on top of them.
struct ExampleScene {
  std::string name;
  std::vector<Pose> brackets = {};
  std::vector<Placement> on_top = {};
  int clutter_rounds = 1;  // how often the stock of clutter parts is strewn
  Imaging imaging = {};    // its seed places the clutter too
};

std::vector<ExampleScene> ExampleScenes() {
  return {
      {.name = "turned",
       .brackets = {{302.25, 236.5, 28.6, 1.0}},
       .imaging = {.blur_sigma_px = 0.6, .light_falloff = 0.15, .noise_sigma = 2, .seed = 11}},
      {.name = "crowded",
       .brackets = {{351.4, 262.7, -171.3, 1.1}},
       .clutter_rounds = 4,
       .imaging = {.blur_sigma_px = 0.7, .light_falloff = 0.25, .noise_sigma = 3, .seed = 12}},
      {.name = "small",
       .brackets = {{217.6, 300.2, 118.4, 0.6}},
       .imaging = {.blur_sigma_px = 0.6, .light_falloff = 0.15, .noise_sigma = 2, .seed = 13}},
      {.name = "large",
       .brackets = {{322.8, 243.1, -63.5, 1.6}},
       .imaging = {.blur_sigma_px = 0.8, .light_falloff = 0.2, .noise_sigma = 2, .seed = 14}},
      {.name = "noisy",
       .brackets = {{396.1, 224.9, -124.2, 0.9}},
       .imaging = {.blur_sigma_px = 0.8, .light_falloff = 0.2, .noise_sigma = 8, .seed = 15}},
      {.name = "dim",
       .brackets = {{268.3, 219.4, 74.8, 1.25}},
       .imaging = {.contrast = 0.95,
                   .blur_sigma_px = 0.9,
                   .light_falloff = 0.4,
                   .light_direction_deg = 35,
                   .noise_sigma = 2,
                   .seed = 16}},
      {.name = "covered",
       .brackets = {{318.7, 229.6, 151.9, 1.2}},
       .on_top = {{Rod(230, 16), {415, 300, 72, 1}}, {Washer(24, 11), {236, 210, 0, 1}}},
       .imaging = {.blur_sigma_px = 0.7, .light_falloff = 0.2, .noise_sigma = 3, .seed = 17}},
      {.name = "three",
       .brackets = {{132.5, 132.2, 41.7, 0.9},
                    {470.3, 150.8, -98.1, 1.0},
                    {317.9, 362.4, 169.3, 0.8}},
       .imaging = {.blur_sigma_px = 0.7, .light_falloff = 0.2, .noise_sigma = 2, .seed = 18}},
      {.name = "absent",
       .imaging = {.blur_sigma_px = 0.7, .light_falloff = 0.2, .noise_sigma = 2, .seed = 19}},
  };
}

std::vector<Part> ClutterParts() {
  return {Gear(),         Plate(130, 84), Plate(96, 62), Rod(210, 14), Rod(150, 10), Rod(120, 18),
          Washer(30, 14), Washer(22, 9),  HexNut(52),    HexNut(38),   Washer(17, 8)};
}

double Reach(const Placement& placement) {
  const Size frame = placement.part.frame;
  return placement.pose.scale * std::max(frame.width, frame.height) / 2;
}

/// True when a part keeps clear enough of all others. Reaches are those of frames, so parts that
/// are only just clear may touch, as they do in a tray.
bool KeepsClear(const Placement& placement, const std::vector<Placement>& others) {
  constexpr double kCrowding = 0.75;
  return std::all_of(others.begin(), others.end(), [&](const Placement& other) {
    const double distance =
        Length(Point{placement.pose.x - other.pose.x, placement.pose.y - other.pose.y});
    return distance > kCrowding * (Reach(placement) + Reach(other));
  });
}

/// Puts a part where it keeps clear of the others, at random; leaves it out when it finds no room.
void Strew(const Part& part, RandomSource& random, std::vector<Placement>& taken) {
  constexpr int kAttempts = 60;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const double x = random.Uniform(0, kSceneSize.width);
    const double y = random.Uniform(0, kSceneSize.height);
    const double angle_deg = random.Uniform(-180, 180);
    const Placement candidate{part, {x, y, angle_deg, random.Uniform(0.8, 1.2)}};
    if (!KeepsClear(candidate, taken)) continue;
    taken.push_back(candidate);
    return;
  }
}

/// Clutter parts that lie beside the brackets.
std::vector<Placement> StrewClutter(const std::vector<Placement>& brackets,
                                    const ExampleScene& scene) {
  RandomSource random(scene.imaging.seed);
  std::vector<Placement> taken = brackets;
  for (int round = 0; round < scene.clutter_rounds; ++round) {
    for (const Part& part : ClutterParts())
      Strew(part, random, taken);
  }
  return {taken.begin() + static_cast<std::ptrdiff_t>(brackets.size()), taken.end()};
}

std::string Fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string ManifestRow(const std::string& scene, int instance, const std::string& truth) {
  return scene + ",pattern.png,scenes/" + scene + ".png," + std::to_string(instance) + "," + truth +
         "\n";
}

std::string Truth(const Pose& pose, double occlusion) {
  return Fixed(pose.x, 4) + "," + Fixed(pose.y, 4) + "," + Fixed(pose.angle_deg, 4) + "," +
         Fixed(pose.scale, 5) + "," + Fixed(occlusion, 4);
}

std::string ParamsRow(const ExampleScene& scene, std::size_t clutter_parts) {
  const Imaging& imaging = scene.imaging;
  return scene.name + ",clutter=" + std::to_string(clutter_parts) +
         ";contrast=" + Fixed(imaging.contrast, 2) + ";blur=" + Fixed(imaging.blur_sigma_px, 2) +
         ";falloff=" + Fixed(imaging.light_falloff, 2) + ";noise=" + Fixed(imaging.noise_sigma, 1) +
         "\n";
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

void WriteText(const std::string& text, const std::filesystem::path& path) {
  const std::error_code error =
      WriteFileAtomically(path, std::as_bytes(std::span<const char>(text)));
  if (error) throw std::runtime_error("cannot write " + Utf8(path) + ": " + error.message());
}

/// Renders one scene and appends its rows to the two tables.
void WriteScene(const ExampleScene& scene, const std::filesystem::path& folder,
                std::string& manifest, std::string& params) {
  std::vector<Placement> brackets;
  for (const Pose& pose : scene.brackets)
    brackets.push_back({MetalBracket(), pose});
  std::vector<Placement> placements = StrewClutter(brackets, scene);
  const std::size_t first_bracket = placements.size();
  placements.insert(placements.end(), brackets.begin(), brackets.end());
  placements.insert(placements.end(), scene.on_top.begin(), scene.on_top.end());

  WriteImage(RenderScene(placements, scene.imaging, kSceneSize),
             folder / "scenes" / (scene.name + ".png"));
  params += ParamsRow(scene, first_bracket + scene.on_top.size());
  if (brackets.empty()) manifest += ManifestRow(scene.name, -1, ",,,,");
  for (std::size_t i = 0; i < brackets.size(); ++i) {
    const double occlusion = OccludedShare(placements, first_bracket + i, kSceneSize);
    manifest += ManifestRow(scene.name, static_cast<int>(i), Truth(brackets[i].pose, occlusion));
  }
}

void WriteExample(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder / "scenes");
  WriteImage(RenderPattern(MetalBracket(), kPatternImaging), folder / "pattern.png");
  std::string manifest = "case,pattern,scene,instance,cx,cy,angle_deg,scale,occlusion\n";
  std::string params = "case,params\n";
  for (const ExampleScene& scene : ExampleScenes())
    WriteScene(scene, folder, manifest, params);
  WriteText(params, folder / "params.csv");
  WriteText(manifest, folder / "manifest.csv");  // last: where it stands, the suite is complete
}

}  // namespace
}  // namespace orvandel::render

int main(int argc, char** argv) {
  constexpr char kUsage[] =
      "usage: orvandel_render_example DIR\n"
      "Writes an example suite into DIR: pattern.png, scenes/*.png, manifest.csv, params.csv.\n";
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
    orvandel::render::WriteExample(argument);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvandel_render_example: %s\n", error.what());
    return 2;
  }
  return 0;
}
