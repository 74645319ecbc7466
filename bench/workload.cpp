#include "bench/workload.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "bench/working_copy.h"
#include "evaluation/cluttered_scenes.h"
#include "evaluation/image_file.h"
#include "evaluation/manifest.h"
#include "evaluation/paths.h"
#include "orvandel/classic/qrsis.h"

namespace orvandel::bench {
namespace {

using evaluation::ClutteredScene;
using SharedImage = std::shared_ptr<const NamedImage>;

std::string NameOf(const ClutteredScene& scene) {
  return std::to_string(scene.size.width) + " x " + std::to_string(scene.size.height) + ", " +
         std::to_string(scene.num_parts) + " parts, noise " +
         std::to_string(static_cast<int>(scene.noise_sigma)) + ", seed " +
         std::to_string(scene.seed);
}

SharedImage Share(std::string name, ImagePtr image) {
  if (!image) throw std::runtime_error("no memory for " + name);
  return std::make_shared<const NamedImage>(NamedImage{std::move(name), std::move(image)});
}

/// Paths in order, so that every run measures in the same one.
template <typename Accept>
std::vector<std::filesystem::path> FilesBelow(const std::string& folder, const Accept& accept) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(evaluation::PathFromUtf8(folder))) {
    if (entry.is_regular_file() && accept(entry.path())) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  if (files.empty()) throw std::runtime_error("nothing to measure on in " + folder);
  return files;
}

/// Whether the segment engine learns a pattern from an image: round ones it refuses.
bool HasSegments(const tImage& image) {
  QRSIS search;
  search.Initialize();
  WorkingCopy copy;
  return search.TrainIt(copy.Restored(image)) == 0;
}

}  // namespace

std::vector<NamedImage> RenderedImages() {
  constexpr render::Size kSizes[] = {{512, 384}, {640, 480}, {1280, 1024}, {2000, 1500}};
  std::vector<NamedImage> images;
  std::uint32_t seed = 0;
  for (const render::Size size : kSizes) {
    const int usual = evaluation::PartsForSize(size);
    for (const int num_parts : {std::max(usual / 4, 1), usual, 3 * usual}) {
      for (const double noise_sigma : {0.0, 3.0, 8.0}) {
        const ClutteredScene scene{size, num_parts, noise_sigma, ++seed};
        images.push_back({NameOf(scene), Render(scene)});
      }
    }
  }
  return images;
}

std::vector<SearchCase> RenderedSearches() {
  constexpr std::uint32_t kNumScenes = 60;
  const SharedImage pattern = Share("bracket", evaluation::BracketPattern());
  std::vector<SearchCase> cases;
  for (std::uint32_t i = 0; i < kNumScenes; ++i) {
    const ClutteredScene scene{{640, 480}, static_cast<int>(4 + 5 * (i % 6)), 1.0 + i % 5, 100 + i};
    cases.push_back({NameOf(scene), pattern, Share(NameOf(scene), Render(scene))});
  }
  return cases;
}

std::vector<NamedImage> ReadImages(const std::string& folder) {
  std::vector<NamedImage> images;
  for (const auto& file : FilesBelow(folder, [](const auto& p) { return p.extension() == ".png"; }))
    images.push_back({evaluation::Utf8FromPath(file.filename()),
                      evaluation::ReadImage(evaluation::Utf8FromPath(file)).image});
  return images;
}

std::vector<SearchCase> ReadSearches(const std::string& folder) {
  std::map<std::string, SharedImage> read;
  std::map<const NamedImage*, bool> is_learnt;
  const auto input = [&](const std::string& path) {
    SharedImage& shared = read[path];
    if (!shared) shared = Share(path, evaluation::ReadImage(path).image);
    return shared;
  };
  std::vector<SearchCase> cases;
  for (const auto& file :
       FilesBelow(folder, [](const auto& p) { return p.filename() == "manifest.csv"; })) {
    const evaluation::Suite suite = evaluation::ReadSuite(evaluation::Utf8FromPath(file));
    for (const evaluation::TestCase& test : suite.cases) {
      const SharedImage pattern = input(test.pattern);
      const auto [known, is_new] = is_learnt.try_emplace(pattern.get());
      if (is_new) known->second = HasSegments(*pattern->image);
      if (known->second)
        cases.push_back({suite.name + "/" + test.name, pattern, input(test.scene)});
    }
  }
  std::stable_sort(cases.begin(), cases.end(), [](const SearchCase& a, const SearchCase& b) {
    return a.pattern->name < b.pattern->name;
  });
  return cases;
}

}  // namespace orvandel::bench
