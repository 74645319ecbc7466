// What was learnt, as a file: the pattern image itself. Loading trains on it again.

#include <new>
#include <string>

#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/qrsis.h"
#include "platform/image_ptr.h"

namespace {

constexpr int kBmp = 1;

std::string KnowledgeFile(const char* path) {
  return std::string(path) + "_qrsi.bmp";
}

/// The image in a knowledge file; null when it cannot be read.
orvandel::ImagePtr ReadKnowledge(const char* path) {
  const std::string file = KnowledgeFile(path);
  int width = 0;
  int height = 0;
  int channels = 0;
  int bits = 0;
  if (im_file_get_size(file.c_str(), kBmp, &width, &height, &channels, &bits) != 0) return nullptr;

  tImage* image = im_create(1, width, height);
  // An image whose file cannot be read is not released, as the interface behaves.
  if (im_file_read(image, file.c_str(), kBmp) != 0) return nullptr;
  return orvandel::ImagePtr(image);
}

}  // namespace

bool QRSIS::SaveKnowledge(const char* path) {
  if (pattern_image_ == nullptr || path == nullptr) return false;
  try {
    return im_file_write(pattern_image_, KnowledgeFile(path).c_str(), kBmp) == 0;
  } catch (const std::bad_alloc&) {
    return false;  // no memory for the name
  }
}

bool QRSIS::LoadKnowledge(const char* path) {
  if (path == nullptr) return false;
  orvandel::ImagePtr image;
  try {
    image = ReadKnowledge(path);
  } catch (const std::bad_alloc&) {
    return false;  // no memory for the name
  }
  if (!image) return false;
  TrainIt(image.get());
  return true;
}
