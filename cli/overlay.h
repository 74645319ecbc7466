#pragma once

#include <set>
#include <span>
#include <string>

#include "cli/canvas.h"
#include "cli/pattern_finder.h"

namespace orvandel::cli {

/// What a search of one pattern came to, to be drawn.
struct DrawnFind {
  const PatternFinder* finder = nullptr;
  const FindResult* result = nullptr;
  std::string name;  ///< of the pattern, for the labels; empty where there is only one
};

/// Draws what was found in a scene: at each match the pattern's outline, in a colour for each
/// pattern and in orange for a pose that is not good enough; a mark at the reference point with an
/// arrow along the pattern's x axis; and a label with number, score and pose beside it. A caption
/// says what was not found. The frame is green where every pattern was found, red where one was
/// not, and orange where only doubtful poses are.
void DrawFinds(Canvas& canvas, std::span<const DrawnFind> finds);

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
