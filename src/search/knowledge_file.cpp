#include "search/knowledge_file.h"

#include <new>
#include <string>

namespace orvandel {
namespace {

constexpr int kBmp = 1;

std::string KnowledgeFile(const char* path) {
  return std::string(path) + "_qrsi.bmp";
}

ImagePtr ReadBmp(const std::string& file) {
  int width = 0;
  int height = 0;
  int channels = 0;
  int bits = 0;
  if (im_file_get_size(file.c_str(), kBmp, &width, &height, &channels, &bits) != 0) return nullptr;

  tImage* image = im_create(1, width, height);
  // An image whose file cannot be read is not released, as the interface behaves.
  if (im_file_read(image, file.c_str(), kBmp) != 0) return nullptr;
  return ImagePtr(image);
}

}  // namespace

bool WriteKnowledge(tImage* pattern, const char* path) {
  try {
    return im_file_write(pattern, KnowledgeFile(path).c_str(), kBmp) == 0;
  } catch (const std::bad_alloc&) {
    return false;  // no memory for the name
  }
}

ImagePtr ReadKnowledge(const char* path) {
  try {
    return ReadBmp(KnowledgeFile(path));
  } catch (const std::bad_alloc&) {
    return nullptr;  // no memory for the name
  }
}

}  // namespace orvandel
