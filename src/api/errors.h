#pragma once

#include <new>

#include "orvandel/orvandel.h"

namespace orvandel::api {

/// What a function of the C interface stops with. The sentence is a literal.
struct Failure {
  int status;
  const char* message;
};

[[noreturn]] inline void RejectArgument(const char* message) {
  throw Failure{ORV_INVALID_ARGUMENT, message};
}

inline void Require(bool condition, const char* message) {
  if (!condition) RejectArgument(message);
}

/// Keeps the sentence for `orv_last_message`, which needs no memory.
int Report(const Failure& failure) noexcept;

/// Runs the body of a C function: no exception leaves it.
template <typename Body>
int Guarded(const Body& body) noexcept {
  try {
    body();
    return ORV_OK;
  } catch (const Failure& failure) {
    return Report(failure);
  } catch (const std::bad_alloc&) {
    return Report({ORV_OUT_OF_MEMORY, "There is not enough memory."});
  } catch (...) {
    return Report({ORV_INTERNAL_ERROR, "The library made a mistake."});
  }
}

}  // namespace orvandel::api
