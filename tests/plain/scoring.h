#pragma once

#include "base/geometry.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/plain/probe_count.h"

namespace orvandel::plain {

/// As `CPattVerify::ScoreAtVerifyPoints`: each point pays all its probes until one matches.
///
/// @param reference  the pattern's reference point, pattern pixels.
/// @param count      null, or what this pose cost is added to it.
double ScoreAtVerifyPoints(const CPattVerify& verifier, const CEdgeImgComplement* edges,
                           const Similarity& pose, Point reference, ProbeCount* count = nullptr);

/// As `CPattVerify::ScoreAlongContours`.
double ScoreAlongContours(const CPattVerify& rules, void* contours, const CEdgeImgComplement* edges,
                          const Similarity& pose, Point reference, int step,
                          ProbeCount* count = nullptr);

}  // namespace orvandel::plain
