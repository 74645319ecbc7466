#include <algorithm>
#include <memory>

#include "api/errors.h"
#include "api/images.h"
#include "api/pattern.h"
#include "api/sized_structs.h"
#include "base/geometry.h"
#include "base/trigonometry.h"
#include "orvandel/orvandel.h"
#include "shape/find_shapes.h"

using orvandel::Point;
using orvandel::api::Guarded;
using orvandel::api::Require;
using orvandel::shape::FindOptions;
using orvandel::shape::FindResult;
using orvandel::shape::FindStatus;

struct orv_finder {
  orvandel::shape::Workspace workspace;
  FindResult result;  // its matches live in the workspace
  Point origin;       // of the pattern looked for last, pixels of its image
  bool has_result = false;
};

namespace {

orv_find_options DefaultFindOptions() {
  const FindOptions usual;
  orv_find_options options = {};
  options.struct_size = sizeof options;
  options.angle_start = usual.angle_start;
  options.angle_extent = usual.angle_extent;
  options.min_scale = usual.min_scale;
  options.max_scale = usual.max_scale;
  options.min_score = usual.min_score;
  options.max_overlap = usual.max_overlap;
  options.time_budget_us = usual.time_budget_us;
  options.max_matches = usual.max_matches;
  options.polarity = ORV_POLARITY_MIXED;
  options.num_threads = usual.num_threads;
  return options;
}

orvandel::shape::Polarity PolarityOf(int32_t polarity) {
  using orvandel::shape::Polarity;
  switch (polarity) {
    case ORV_POLARITY_SAME:
      return Polarity::kSame;
    case ORV_POLARITY_REVERSED:
      return Polarity::kReversed;
    case ORV_POLARITY_EITHER:
      return Polarity::kEither;
    case ORV_POLARITY_MIXED:
      return Polarity::kMixed;
    default:
      orvandel::api::RejectArgument("The polarity is none of enum orv_polarity.");
  }
}

/// Ranges are checked by the search itself, which has the sentences.
FindOptions Translated(const orv_find_options& asked) {
  Require(asked.num_threads >= 1, "The number of threads must be 1 or more.");
  FindOptions options;
  options.angle_start = asked.angle_start;
  options.angle_extent = asked.angle_extent;
  options.min_scale = asked.min_scale;
  options.max_scale = asked.max_scale;
  options.min_score = asked.min_score;
  options.max_overlap = asked.max_overlap;
  options.time_budget_us = asked.time_budget_us;
  options.max_matches = asked.max_matches;
  options.polarity = PolarityOf(asked.polarity);
  options.num_threads = asked.num_threads;
  return options;
}

void CheckResult(const orv_finder* finder) {
  Require(finder != nullptr, "The finder is null.");
  Require(finder->has_result, "The finder has no result: nothing was looked for, or that failed.");
}

orv_match Translated(const orvandel::shape::Match& found, Point origin) {
  const orvandel::Similarity& pose = found.scene_from_pattern;
  orv_match match = {};
  match.x = pose.x;
  match.y = pose.y;
  match.angle = pose.angle;
  match.scale = pose.scale;
  const orvandel::SinCos turn = orvandel::SinCosOf(pose.angle);
  const double cosine = pose.scale * turn.cosine;
  const double sine = pose.scale * turn.sine;
  const double rows[] = {cosine, -sine,  pose.x - (cosine * origin.x - sine * origin.y),
                         sine,   cosine, pose.y - (sine * origin.x + cosine * origin.y)};
  std::copy(std::begin(rows), std::end(rows), match.scene_from_pattern);
  std::copy(found.covariance.begin(), found.covariance.end(), match.covariance);
  match.score = found.score;
  match.coverage = found.coverage;
  match.clutter = found.clutter;
  match.fit_error = found.fit_error;
  match.contrast = found.contrast;
  match.share_outside = found.share_outside;
  match.is_reversed = found.is_reversed ? 1 : 0;
  return match;
}

}  // namespace

void orv_find_options_init(orv_find_options* options, size_t struct_size) {
  orvandel::api::InitSized(DefaultFindOptions(), struct_size, options);
}

int orv_finder_create(orv_finder** finder) {
  return Guarded([&] {
    Require(finder != nullptr, "There is no place for the new finder: the pointer is null.");
    *finder = nullptr;
    *finder = new orv_finder;
  });
}

void orv_finder_destroy(orv_finder* finder) {
  delete finder;
}

int orv_finder_find(orv_finder* finder, const orv_pattern* pattern, const orv_image* scene,
                    const orv_find_options* options) {
  return Guarded([&] {
    Require(finder != nullptr, "The finder is null.");
    finder->has_result = false;
    Require(pattern != nullptr, "The pattern is null.");
    const orvandel::ImageView view = orvandel::api::ViewOf(scene, "The scene is null.");
    const FindOptions asked = Translated(orvandel::api::ReadSized(options, DefaultFindOptions()));
    finder->result = FindShapes(*pattern->model, view, asked, finder->workspace);
    if (finder->result.status != FindStatus::kOk)
      orvandel::api::RejectArgument(finder->result.message.data());
    finder->origin = orvandel::api::OriginOf(*pattern->model);
    finder->has_result = true;
  });
}

int orv_finder_get_result(const orv_finder* finder, orv_result* result) {
  return Guarded([&] {
    CheckResult(finder);
    const FindResult& found = finder->result;
    orv_result known = {};
    known.num_matches = found.matches.size();
    known.timed_out = found.timed_out ? 1 : 0;
    known.pyramid_us = found.times_us.pyramid;
    known.response_maps_us = found.times_us.response_maps;
    known.coarse_search_us = found.times_us.coarse_search;
    known.tracking_us = found.times_us.tracking;
    known.refinement_us = found.times_us.refinement;
    known.scoring_us = found.times_us.scoring;
    known.total_us = found.times_us.total;
    orvandel::api::WriteSized(known, result);
  });
}

int orv_finder_get_match(const orv_finder* finder, size_t index, orv_match* match) {
  return Guarded([&] {
    CheckResult(finder);
    Require(index < finder->result.matches.size(), "There is no match of that index.");
    orvandel::api::WriteSized(Translated(finder->result.matches[index], finder->origin), match);
  });
}
