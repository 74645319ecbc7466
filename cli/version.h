#pragma once

namespace orvandel::cli {

inline constexpr const char* kVersion = ORVANDEL_VERSION;  // set by the build

}  // namespace orvandel::cli
