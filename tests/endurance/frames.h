#pragma once

#include <cstdint>

#include "platform/image_ptr.h"

namespace orvandel::test {

/// The pattern that endurance runs look for, 100 x 80.
ImagePtr EndurancePattern();

/// A frame that nobody chose: of any size from 1 x 1 to 400 x 300, from empty through rendered scenes
/// that hold the pattern to noise and checkerboards. The same index gives the same frame everywhere.
ImagePtr FrameOf(std::uint32_t index);

/// The same at the largest size.
ImagePtr LargestFrameOf(std::uint32_t index);

}  // namespace orvandel::test
