#pragma once

namespace orvandel {

/// What the `ctd_` functions return.
enum CtdStatus : int {
  kCtdDone = 0,
  kCtdOutOfMemory = 4,
  kCtdFileError = 9,
  kCtdNotGrey = 13,  ///< no image, one of another type, or one too large
};

}  // namespace orvandel
