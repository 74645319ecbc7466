#pragma once

#include "orvandel/classic/imgutil_i.h"
#include "platform/image_ptr.h"

namespace orvandel {

// What was learnt, as a file: the pattern image itself, as path + "_qrsi.bmp". Loading trains on it again.

/// @return  false when it cannot be written, also for want of memory.
bool WriteKnowledge(tImage* pattern, const char* path);

/// @return  the pattern image; null when it cannot be read, also for want of memory.
ImagePtr ReadKnowledge(const char* path);

}  // namespace orvandel
