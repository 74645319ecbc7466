#pragma once

#include <cstdint>

#include "base/geometry.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/reference/scoring.h"
#include "verify/score_threshold.h"

namespace orvandel::test {

/// Scores each pose of one pattern in one scene in full.
struct ReferencePoseScorer {
  const CPattVerify& verifier;
  const CEdgeImgComplement& edges;
  Point reference;           ///< of the pattern, pattern pixels
  std::int64_t* num_probes;  ///< may be null

  double operator()(const Similarity& pose, const ScoreThreshold& /*threshold*/) const {
    return ReferenceScoreAtVerifyPoints(
        verifier, edges, {pose.x, pose.y, pose.angle, pose.scale, reference.x, reference.y},
        num_probes);
  }
};

}  // namespace orvandel::test
