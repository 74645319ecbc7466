#pragma once

#include <memory>

#include "orvandel/classic/ctd.h"

namespace orvandel {

struct ContourSetDeleter {
  void operator()(void* handle) const { ctd_delete(handle); }
};

/// A `ctd_` handle that releases itself; `get()` is the handle.
using ContourHandle = std::unique_ptr<void, ContourSetDeleter>;

}  // namespace orvandel
