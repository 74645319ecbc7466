#pragma once

#include "image/image_view.h"
#include "orvandel/orvandel.h"

namespace orvandel::api {

/// @param null_message  what to say where there is no image at all.
/// @throws Failure where the description cannot be that of an image.
ImageView ViewOf(const orv_image* given, const char* null_message);

}  // namespace orvandel::api
