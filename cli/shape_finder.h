#pragma once

#include <memory>
#include <vector>

#include "cli/pattern_finder.h"
#include "shape/find_shapes.h"

namespace orvandel::cli {

/// A pattern that the shape engine looks for.
class ShapeFinder : public PatternFinder {
 public:
  explicit ShapeFinder(const SearchOptions& options) : options_(options.shapes) {}

  void Train(ImageFile pattern) override;
  FindResult Search(const ImageFile& scene, int max_matches) override;
  PatternFacts Facts() const override;
  std::vector<Polyline> Outline() const override;

  const shape::ShapeModel& Model() const { return *model_; }

 private:
  shape::FindOptions options_;
  std::shared_ptr<const shape::ShapeModel> model_;
  shape::Workspace workspace_;
  double learning_ms_ = 0;
};

}  // namespace orvandel::cli
