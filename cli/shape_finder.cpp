#include "cli/shape_finder.h"

#include <utility>

#include <fmt/format.h>

#include "cli/shape_outline.h"
#include "cli/stopwatch.h"
#include "cli/tool_error.h"
#include "shape/learn_shape.h"

namespace orvandel::cli {
namespace {

FindStatus StatusOf(const shape::FindResult& found) {
  if (!found.matches.empty()) return FindStatus::kFound;
  return found.timed_out ? FindStatus::kTimedOut : FindStatus::kNotFound;
}

}  // namespace

void ShapeFinder::Train(ImageFile pattern) {
  const Stopwatch watch;
  shape::LearnResult learnt = shape::LearnShape(GreyView(pattern));
  if (learnt.status != shape::LearnStatus::kOk)
    throw FileError(pattern.path, std::string(learnt.message));
  model_ = std::move(learnt.model);
  learning_ms_ = watch.Milliseconds();
}

FindResult ShapeFinder::Search(const ImageFile& scene, int max_matches) {
  shape::FindOptions options = options_;
  options.max_matches = max_matches;
  const shape::FindResult found = shape::FindShapes(*model_, GreyView(scene), options, workspace_);
  if (found.status == shape::FindStatus::kBadOptions) throw UsageError(std::string(found.message));
  if (found.status != shape::FindStatus::kOk)
    throw FileError(scene.path, std::string(found.message));
  FindResult result;
  result.status = StatusOf(found);
  result.time_ms = found.times_us.total / 1000;
  result.timed_out = found.timed_out;
  result.stage_times_us = found.times_us;
  for (const shape::Match& match : found.matches)
    result.matches.push_back({match.scene_from_pattern, match.score, true, match});
  return result;
}

PatternFacts ShapeFinder::Facts() const {
  ShapeFacts learnt;
  for (const shape::ModelLevel& level : model_->levels) {
    learnt.levels.push_back({level.factor, static_cast<int>(level.coarse.size),
                             static_cast<int>(level.fine.size), static_cast<int>(level.all.size)});
  }
  learnt.chances = model_->chances;
  const Point centre = {0.5 * (model_->Width() - 1), 0.5 * (model_->Height() - 1)};
  return {model_->image.width, model_->image.height, centre + model_->origin, learning_ms_,
          std::move(learnt)};
}

std::vector<Polyline> ShapeFinder::Outline() const {
  std::vector<Polyline> strokes = JoinedPoints(model_->levels.front().all);
  for (Polyline& stroke : strokes) {
    for (Point& p : stroke.points)
      p = p - model_->origin;
  }
  return strokes;
}

}  // namespace orvandel::cli
