#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/image_ptr.h"

namespace orvandel::bench {

struct NamedImage {
  std::string name;
  ImagePtr image;

  double Megapixels() const { return image->width * 1e-6 * image->height; }
};

/// A pattern and a scene to look for it in. Cases share their images.
struct SearchCase {
  std::string name;
  std::shared_ptr<const NamedImage> pattern;
  std::shared_ptr<const NamedImage> scene;
};

/// What the benchmarks run on.
struct Workload {
  std::vector<NamedImage> images;
  std::vector<SearchCase> searches;  ///< those of one pattern follow each other
};

/// Scenes that the project draws itself: several sizes, from few parts to many, from little noise
/// to much. Used for whatever no folder is named.
std::vector<NamedImage> RenderedImages();
std::vector<SearchCase> RenderedSearches();

/// All PNG images of a folder and the folders in it, by path. Throws std::runtime_error.
std::vector<NamedImage> ReadImages(const std::string& folder);

/// The cases of all suites of a folder whose patterns the segment engine learns. Throws std::runtime_error.
std::vector<SearchCase> ReadSearches(const std::string& folder);

}  // namespace orvandel::bench
