#pragma once

#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

/// Whether a pattern's edges tell its angle: not so where they run around one point everywhere, as a full
/// circle's do. What is left of gradients around the point that has least of them is noise then.
///
/// @param gradient_variance  of the noise of a gradient's components at that level of blur.
bool TellsAngle(const Strip& strip, const BlurLevel& level, double gradient_variance);

}  // namespace orvandel::shape
