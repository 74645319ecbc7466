#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "base/geometry.h"
#include "cli/find_result.h"
#include "cli/image_input.h"
#include "cli/polyline.h"
#include "cli/search_options.h"
#include "evaluation/finder.h"
#include "shape/model/shape_model.h"

namespace orvandel::cli {

/// What the segment engine learnt.
struct SegmentFacts {
  int num_contours = 0;
  int num_points = 0;  ///< of all contours
  int num_lines = 0;   ///< straight segments
  int edge_threshold = 0;
};

/// What the shape engine learnt.
struct ShapeFacts {
  /// Edge points of the pattern seen so many times smaller.
  struct Level {
    double factor = 1;
    int num_coarse = 0;
    int num_fine = 0;
    int num_all = 0;
  };
  std::vector<Level> levels;                ///< by rising factor
  std::vector<shape::ChanceLevel> chances;  ///< by rising scale
};

/// What training learnt.
struct PatternFacts {
  int width = 0;  ///< of the pattern image, pixels
  int height = 0;
  Point
      reference;  ///< the point whose place matches tell: pattern pixels, the first's centre is 0, 0
  double learning_ms = 0;
  std::variant<ShapeFacts, SegmentFacts> learnt;
};

/// One line of it, as in "240 x 200 pixels, 3 contours of 812 points, ...".
std::string Describe(const PatternFacts& facts);

/// The number of a shape's points at full size, or nearest to it.
int NumEdgePoints(const ShapeFacts& facts);

/// The smallest scale at which a shape still shows edges to be found by.
double SmallestScale(const ShapeFacts& facts);

/// A pattern that can be looked for in many scenes, by either engine.
class PatternFinder : public evaluation::Finder {
 public:
  /// Learns the pattern. Throws FileError, with what to change, when there is nothing to learn.
  virtual void Train(ImageFile pattern) = 0;

  /// Looks for the pattern. Throws FileError for a scene that the engine does not take.
  ///
  /// @param max_matches  0 for all; the segment engine finds one at most.
  virtual FindResult Search(const ImageFile& scene, int max_matches) = 0;

  virtual PatternFacts Facts() const = 0;

  /// What to draw of the pattern: pattern pixels from the reference point.
  virtual std::vector<Polyline> Outline() const = 0;

  // As an evaluation sees it.
  evaluation::PatternFrame Learn(const ImageFile& pattern) final;
  evaluation::Finding Find(const ImageFile& scene) final { return FindSeveral(scene, 1); }
  evaluation::Finding FindSeveral(const ImageFile& scene, int max_matches) final;

  /// Of the last evaluated scene, for drawing.
  const FindResult& LastResult() const { return last_result_; }

 private:
  FindResult last_result_;
};

/// A finder of the options' engine.
std::unique_ptr<PatternFinder> MakePatternFinder(const SearchOptions& options);

}  // namespace orvandel::cli
