#include "cli/draw_options.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/tool_error.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::ParseInteger;

namespace {

constexpr int kMaxZoom = 32;

int ParseZoom(const std::string& text) {
  const auto zoom = ParseInteger(text);
  if (zoom && *zoom >= 1 && *zoom <= kMaxZoom) return *zoom;
  throw UsageError(fmt::format("--zoom: '{}' is not a whole number from 1 to {}", text, kMaxZoom));
}

}  // namespace

void AddDrawOptions(CLI::App& app, DrawOptions& options, const std::string& what) {
  app.add_option("--draw", options.file,
                 fmt::format("Write a PNG of the darkened picture with {}.", what))
      ->type_name("FILE")
      ->group("Output");
  AddZoomOption(app, options.zoom);
}

void AddZoomOption(CLI::App& app, int& zoom) {
  app.add_option_function<std::string>(
         "--zoom", [&zoom](const std::string& text) { zoom = ParseZoom(text); },
         fmt::format("Draw so many times larger, 1 to {} (1); sub-pixel detail shows from 4 on.",
                     kMaxZoom))
      ->type_name("N")
      ->group("Output");
}

void CheckZoom(const ImageFile& file, int zoom) {
  const int longer_side = std::max(file.image->width, file.image->height);
  if (longer_side > evaluation::kMaxImageSide / zoom)
    throw FileError(file.path, fmt::format("too large to be drawn {} times larger (--zoom)", zoom));
}

Canvas DarkenedCanvas(const ImageFile& file, const DrawOptions& options) {
  constexpr double kBrightness = 0.45;
  CheckZoom(file, options.zoom);
  return Canvas(*file.image, options.zoom, kBrightness);
}

}  // namespace orvandel::cli
