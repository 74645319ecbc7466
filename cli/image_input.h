#pragma once

#include "cli/engine.h"
#include "cli/rectangle.h"
#include "evaluation/image_file.h"
#include "image/image_view.h"

namespace orvandel::cli {

using evaluation::CopyOf;
using evaluation::ImageFile;
using evaluation::ReadImage;

/// The part of an image as an image of its own. Throws UsageError when it reaches beyond it.
ImageFile CutOut(const ImageFile& file, const Rectangle& part);

/// The pixels as the shape engine takes them: all 16 bits where the file has them.
ImageView GreyView(const ImageFile& file);

/// Says on standard error how the file became 8-bit grey, if it was anything else and the engine
/// sees no more of it.
void NoteConversion(const ImageFile& file, Engine engine = Engine::kSegments);

}  // namespace orvandel::cli
