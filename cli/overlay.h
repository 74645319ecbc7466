#pragma once

#include <set>
#include <string>

#include "cli/canvas.h"
#include "cli/pattern_finder.h"

namespace orvandel::cli {

/// Draws what `finder` found: the pattern's contours at the pose, a mark at the reference point
/// with an arrow along the pattern's x axis, the numbers, and a frame, in green for a find and in
/// orange for a pose that is not good enough. Without a pose there is only a red frame and the
/// status.
void DrawFindResult(Canvas& canvas, const PatternFinder& finder, const FindResult& result);

/// A folder of overlay images, made when the first one is written.
class OverlayFolder {
 public:
  explicit OverlayFolder(std::string folder) : folder_(std::move(folder)) {}

  /// Writes NAME.overlay.png, or NAME-2.overlay.png and so on where this object has written that
  /// name before. A path separator in the name becomes "_". Throws FileError.
  ///
  /// @return  the file's path.
  std::string Write(const std::string& name, const Canvas& canvas);

 private:
  std::string UnusedName(const std::string& name);

  std::string folder_;
  std::set<std::string> used_names_;  // in small letters, as some file systems compare them
};

}  // namespace orvandel::cli
