#pragma once

#include "evaluation/uniform_random.h"

namespace orvandel::test {

using evaluation::UniformRandom;

}  // namespace orvandel::test
