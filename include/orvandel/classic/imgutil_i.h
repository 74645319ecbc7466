#pragma once

#include <cstdint>

// The image library that Orvandel imports. `libimgutil_i` is an open implementation of it; a host
// that has another one with the same interface links that instead.
#if !defined(_WIN32)
#define IMGUTIL_API __attribute__((visibility("default")))
#elif defined(IMGUTIL_BUILDING)
#define IMGUTIL_API __declspec(dllexport)
#elif defined(IMGUTIL_STATIC)
#define IMGUTIL_API
#else
#define IMGUTIL_API __declspec(dllimport)
#endif

/// An image. Pixels are reached only through `row`, so a host may lay a record of its own over a
/// camera buffer: rows need not be contiguous, and the record may be the head of a larger private
/// one.
struct tImage {
  std::int32_t type;    ///< pixel type; 1 = 8-bit grey, the only one that has contours
  std::int32_t width;   ///< pixels
  std::int32_t height;  ///< pixels
  std::uint8_t** row;   ///< `height` pointers to rows of `width` pixels: row[y][x], y downwards
};

/// Makes an image with every pixel 0, in one block, each row aligned for vector loads.
///
/// @param type   pixel type, kept in the record; every type is created with one byte a pixel.
/// @param width,height  pixels, 1 and more.
/// @return  the image, to be released with `im_delete`; null for a width or height below 1, and for
///          a size whose bytes cannot be counted or had.
IMGUTIL_API tImage* im_create(int type, int width, int height);

/// Makes an image of the same type and size with every pixel 0. Null in, null out; null when out of
/// memory.
IMGUTIL_API tImage* im_dup(const tImage* image);

/// Makes a copy, pixels included. Null in, null out; null when out of memory.
IMGUTIL_API tImage* im_duplicate(const tImage* image);

/// Releases an image that this library made. Null does nothing. A record that a host made over its
/// own pixels is the host's to release.
IMGUTIL_API void im_delete(tImage* image);

/// Reads an image file into an image of exactly the file's size. Colour becomes grey by 0.299 R +
/// 0.587 G + 0.114 B, rounded; the values of a grey file are unchanged.
///
/// @param image      8-bit grey; not resized. After a failed read its pixels are as they were.
/// @param path       UTF-8.
/// @param file_type  1 = BMP with 8, 24 or 32 bits a pixel; 0 = by the path's extension (.bmp,
///                   .png, .jpg, .jpeg, .pgm, .ppm, .pnm), BMP where it names none of these.
/// @return  0, or one of `ImageFileError` below.
IMGUTIL_API int im_file_read(tImage* image, const char* path, int file_type);

/// Writes an 8-bit grey image file. An older file of that name is replaced only by a complete new
/// one; after a failure it is as it was and nothing is left beside it.
///
/// @param file_type  1 = BMP with a 256-entry grey palette; 0 = by the extension (.bmp, .png, .jpg,
///                   .jpeg, .pgm, .ppm, .pnm, .tga), BMP where it names none of these. PNM
///                   names all get a grey PGM.
/// @return  0, or one of `ImageFileError` below.
IMGUTIL_API int im_file_write(const tImage* image, const char* path, int file_type);

/// Reads an image file's header.
///
/// @param width,height  pixels.
/// @param third   channels in the file: 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha.
/// @param fourth  bits a channel.
/// @return  0, or one of `ImageFileError` below; then nothing is written. A null pointer among
///          the results is passed over.
IMGUTIL_API int im_file_get_size(const char* path, int file_type, int* width, int* height,
                                 int* third, int* fourth);

/// Why a file operation failed. Another implementation of this interface may return other non-zero
/// values.
enum ImageFileError : int {
  kImageFileCannotOpen = 1,    ///< missing, or not permitted
  kImageFileForeign = 2,       ///< not an image of the expected format
  kImageFileTruncated = 3,     ///< ends before its last pixel
  kImageFileSizeMismatch = 4,  ///< does not have the image's size
  kImageFileOutOfMemory = 5,   ///< no memory for its pixels
  kImageFileCannotWrite = 6,   ///< full disk, missing or read-only folder
  kImageFileBadArgument =
      7,                   ///< null image or path, unknown file type, image that is not 8-bit grey
  kImageFileTooLarge = 8,  ///< width or height beyond what is read or what the format can hold
};
