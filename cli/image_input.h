#pragma once

#include "cli/rectangle.h"
#include "evaluation/image_file.h"
#include "image/image_view.h"

namespace orvandel::cli {

using evaluation::CopyOf;
using evaluation::ImageFile;
using evaluation::ReadImage;

/// The part of an image as an image of its own. Throws UsageError when it reaches beyond it.
ImageFile CutOut(const ImageFile& file, const Rectangle& part);

/// The pixels as the shape engine takes them.
ImageView GreyView(const ImageFile& file);

/// Says on standard error how the file became 8-bit grey, if it was anything else.
void NoteConversion(const ImageFile& file);

}  // namespace orvandel::cli
