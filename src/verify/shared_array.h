#pragma once

#include <array>

#include "orvandel/classic/patt_verify.h"

namespace orvandel {

/// Counted ownership of arrays of doubles that are held by plain pointers: the published layout has
/// room for nothing else. An array starts with one owner, whoever allocated it with new[], and is not
/// known here until it is shared. Safe on several threads.

/// Adds an owner to each array; null ones are passed over.
/// @throws std::bad_alloc  with no owner added.
void ShareArrays(const std::array<double*, 3>& arrays);

/// Takes an owner away; the last one deletes the array. Null does nothing.
void ReleaseArray(double* array) noexcept;

/// Gives up the three point arrays of a verifier, which then has no points.
void ReleasePoints(CPattVerify& verifier);

}  // namespace orvandel
