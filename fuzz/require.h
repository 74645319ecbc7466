#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program, which the fuzzer takes as a finding. Unlike assert it holds in every build.
#define ORVANDEL_REQUIRE(condition)                                                       \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)
