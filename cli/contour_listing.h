#pragma once

#include <string>

namespace orvandel::cli {

/// The text that `ctd_dump` lists a `ctd_` handle's contours in. Throws FileError when there is no
/// room for it in the folder for temporary files.
std::string ListContours(void* contours);

}  // namespace orvandel::cli
