#pragma once

#include "orvandel/classic/patt_verify.h"
#include "verify/match_options.h"
#include "verify/verification_points.h"

namespace orvandel {

// What the method reads of a `CPattVerify`, and writes to it.

/// Its points; they last as long as the verifier keeps its arrays.
VerificationPointsView PointsOf(const CPattVerify& verifier);

/// Its parameters, with the radius brought into range.
MatchOptions MatchOptionsOf(const CPattVerify& verifier);

/// Replaces its points.
///
/// @throws std::bad_alloc  and leaves the verifier without points.
void SetPoints(CPattVerify& verifier, const VerificationPointsView& points);

}  // namespace orvandel
