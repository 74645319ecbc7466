#include "api/errors.h"

namespace orvandel::api {
namespace {

/// Literals alone, so that a thread's end has nothing to release.
thread_local const char* last_message = "";

}  // namespace

int Report(const Failure& failure) noexcept {
  last_message = failure.message;
  return failure.status;
}

}  // namespace orvandel::api

const char* orv_last_message() {
  return orvandel::api::last_message;
}

const char* orv_status_text(int status) {
  switch (status) {
    case ORV_OK:
      return "ok";
    case ORV_INVALID_ARGUMENT:
      return "invalid argument";
    case ORV_OUT_OF_MEMORY:
      return "out of memory";
    case ORV_NO_EDGES:
      return "no edges";
    case ORV_INTERNAL_ERROR:
      return "internal error";
    default:
      return "unknown status";
  }
}

const char* orv_version() {
  return ORVANDEL_VERSION;
}
