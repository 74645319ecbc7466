#include "bench/compared_cases.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

#include "evaluation/cluttered_scenes.h"
#include "evaluation/manifest.h"
#include "evaluation/paths.h"
#include "evaluation/pose_error.h"
#include "evaluation/uniform_random.h"
#include "examples/render/parts.h"
#include "examples/render/scene.h"

namespace orvandel::bench {
namespace {

using evaluation::ImageFile;
using SharedImage = std::shared_ptr<const ImageFile>;

SharedImage Share(const std::string& name, ImagePtr image) {
  if (!image) throw std::runtime_error("no memory for " + name);
  return std::make_shared<const ImageFile>(ImageFile{name, std::move(image)});
}

/// Draws scenes of one kind after the other from one sequence of random numbers.
class DrawnScenes {
 public:
  ComparedCase Draw(const std::string& suite, int num_others, bool has_part) {
    constexpr render::Size kSize = {640, 480};
    constexpr double kMargin = 130;
    const render::Pose pose = {random_.Real(kMargin, kSize.width - kMargin),
                               random_.Real(kMargin, kSize.height - kMargin),
                               random_.Real(-180, 180), random_.Real(0.55, 1.8)};
    std::vector<render::Placement> placements;
    for (int i = 0; i < num_others; ++i)
      placements.push_back({Other(),
                            {random_.Real(0, kSize.width), random_.Real(0, kSize.height),
                             random_.Real(-180, 180), random_.Real(0.6, 1.5)}});
    if (has_part) placements.push_back({render::MetalBracket(), pose});
    render::Imaging imaging;
    imaging.blur_sigma_px = 0.7;
    imaging.light_falloff = 0.2;
    imaging.noise_sigma = random_.Real(1, 6);
    imaging.seed = ++seed_;
    ComparedCase drawn;
    drawn.suite = suite;
    drawn.pattern = pattern_;
    drawn.scene = Share(suite, render::RenderScene(placements, imaging, kSize));
    if (has_part) {
      drawn.truth.instances.push_back(
          {pose.x, pose.y, evaluation::Radians(pose.angle_deg), pose.scale});
    }
    drawn.truth.params.tolerance.is_scaled = true;
    return drawn;
  }

 private:
  render::Part Other() {
    switch (random_.Integer(0, 3)) {
      case 0:
        return render::Gear();
      case 1:
        return render::Plate(random_.Real(60, 160), random_.Real(50, 100));
      case 2:
        return render::Washer(random_.Real(18, 34), random_.Real(6, 14));
      default:
        return render::HexNut(random_.Real(30, 56));
    }
  }

  SharedImage pattern_ = Share("bracket", evaluation::BracketPattern());
  evaluation::UniformRandom random_{1};
  std::uint64_t seed_ = 0;
};

/// The manifests of a folder and the folders in it, by path.
std::vector<std::filesystem::path> ManifestsBelow(const std::string& folder) {
  std::vector<std::filesystem::path> manifests;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(evaluation::PathFromUtf8(folder))) {
    if (entry.path().filename() == "manifest.csv") manifests.push_back(entry.path());
  }
  std::sort(manifests.begin(), manifests.end());
  if (manifests.empty()) throw std::runtime_error("no suite in " + folder);
  return manifests;
}

class SuiteReader {
 public:
  void Read(const std::filesystem::path& manifest, std::vector<ComparedCase>& cases) {
    const evaluation::Suite suite = evaluation::ReadSuite(evaluation::Utf8FromPath(manifest));
    for (const evaluation::TestCase& test : suite.cases)
      cases.push_back({suite.name, Image(test.pattern), Image(test.scene), test});
  }

 private:
  SharedImage Image(const std::string& path) {
    SharedImage& shared = read_[path];
    if (!shared) shared = std::make_shared<const ImageFile>(evaluation::ReadImage(path));
    return shared;
  }

  std::map<std::string, SharedImage> read_;
};

}  // namespace

std::vector<ComparedCase> DrawnCases() {
  constexpr int kNumOfEach = 20;
  DrawnScenes scenes;
  std::vector<ComparedCase> cases;
  for (int i = 0; i < kNumOfEach; ++i)
    cases.push_back(scenes.Draw("drawn, alone", 0, true));
  for (int i = 0; i < kNumOfEach; ++i)
    cases.push_back(scenes.Draw("drawn, among others", 4 + i, true));
  for (int i = 0; i < kNumOfEach / 2; ++i)
    cases.push_back(scenes.Draw("drawn, others alone", 8 + i, false));
  return cases;
}

std::vector<ComparedCase> CasesOfSuites(const std::vector<std::string>& folders) {
  SuiteReader reader;
  std::vector<ComparedCase> cases;
  for (const std::string& folder : folders) {
    for (const std::filesystem::path& manifest : ManifestsBelow(folder))
      reader.Read(manifest, cases);
  }
  return cases;
}

}  // namespace orvandel::bench
