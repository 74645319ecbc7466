#pragma once

#include <string>

#include "cli/canvas.h"
#include "cli/image_input.h"

namespace CLI {
class App;
}

namespace orvandel::cli {

/// What the commands that show what the library sees draw, and where.
struct DrawOptions {
  std::string file;  ///< PNG; empty for none
  int zoom = 1;      ///< canvas pixels an image pixel

  bool IsWanted() const { return !file.empty(); }
};

/// Adds --draw and --zoom; `options` must live as long as `app`.
///
/// @param what  is drawn over the darkened image, for the help.
void AddDrawOptions(CLI::App& app, DrawOptions& options, const std::string& what);

/// Adds --zoom alone.
void AddZoomOption(CLI::App& app, int& zoom);

/// Throws FileError when the image, so many times larger, would be larger than images may be.
void CheckZoom(const ImageFile& file, int zoom);

/// The image, darkened so that colours stand out, to draw on. Throws FileError when it would be
/// larger than images may be.
Canvas DarkenedCanvas(const ImageFile& file, const DrawOptions& options);

}  // namespace orvandel::cli
