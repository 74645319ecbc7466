#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// Most bytes of samples that the stb codecs are given; they count in 32 bits.
inline constexpr std::uint64_t kMaxCodecBytes = 1ULL << 29;

/// Decodes a PNG or JPEG file that has been found complete, into grey values. `info` is what the
/// file's header says; nothing else is accepted.
ImageFileError DecodeWithStb(ByteView file, const ImageFileInfo& info, Bytes& grey);

enum class StbFormat { kPng, kJpeg, kTga };

ImageFileError EncodeWithStb(const tImage& image, StbFormat format, Bytes& file);

}  // namespace orvandel
