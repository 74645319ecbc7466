#pragma once

#include "base/geometry.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/plain/probe_count.h"
#include "tests/plain/scoring.h"
#include "verify/score_threshold.h"

namespace orvandel::plain {

/// Scores poses of one pattern in one scene at the pattern's verification points.
struct PoseScorer {
  const CPattVerify& verifier;
  const CEdgeImgComplement* edges;
  Point reference;    ///< of the pattern, pattern pixels
  ProbeCount* count;  ///< may be null

  double operator()(const Similarity& pose, const ScoreThreshold& /*threshold*/) const {
    return ScoreAtVerifyPoints(verifier, edges, pose, reference, count);
  }
};

}  // namespace orvandel::plain
