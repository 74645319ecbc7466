#pragma once

#include "base/geometry.h"
#include "contours/contour_set.h"
#include "orvandel/classic/edge_record.h"
#include "verify/match_options.h"
#include "verify/verification_points.h"

namespace orvandel {

// How well a pose of a pattern fits the edges of a scene: the mean credit of the pattern's points in percent,
// 0 to 100; not a number without points. Nothing is allocated or changed.
//
// `reference` is the pattern's reference point in pattern pixels, from which the pose measures its points.
// `edges` may be null, for a scene without pixels.

/// At the verification points. Beside each pixel along the normal one a row off is probed.
double ScoreAtPoints(const VerificationPointsView& points, Point reference,
                     const Similarity& scene_from_pattern, const CEdgeImgComplement* edges,
                     const MatchOptions& options);

/// At every `step`-th point of each contour; a step below 1 counts as 1. Beside each pixel along the normal
/// its neighbour along the edge is probed.
double ScoreAlongContours(const ContourSetView& contours, int step, Point reference,
                          const Similarity& scene_from_pattern, const CEdgeImgComplement* edges,
                          const MatchOptions& options);

}  // namespace orvandel
