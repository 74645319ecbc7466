#pragma once

#include <array>
#include <cstdint>

#include "edges/gradient_tables.h"
#include "platform/grey_rows.h"

namespace orvandel {

/// What is proposed where nothing can be estimated.
inline constexpr int kNoProposal = 10;

/// Number of pixels by gradient magnitude.
using MagnitudeHistogram = std::array<std::int32_t, 256>;

/// The gradient magnitude of each pixel, 0 to 252. The two outermost columns and rows on each side are not
/// written.
///
/// @param magnitudes  of the image's size.
void ComputeMagnitudes(const GreyRows& image, const GradientTables& tables,
                       const GreyRows& magnitudes);

/// A proposal for the edge threshold of an image.
///
/// @return  1 to 255; `kNoProposal` where the histogram gives none: of a flat or tiny image, and of most
///          others too.
int ProposeEdgeThreshold(const MagnitudeHistogram& counts);

}  // namespace orvandel
