// What was learnt, as a file: the pattern image itself. Loading trains on it again.

#include <string>

#include "platform/imgutil_i.h"
#include "search/qrsis.h"

namespace {

constexpr int kBmp = 1;

std::string KnowledgeFile(const char* path) {
  return std::string(path) + "_qrsi.bmp";
}

}  // namespace

bool QRSIS::SaveKnowledge(const char* path) {
  if (pattern_image_ == nullptr || path == nullptr) return false;
  return im_file_write(pattern_image_, KnowledgeFile(path).c_str(), kBmp) == 0;
}

bool QRSIS::LoadKnowledge(const char* path) {
  if (path == nullptr) return false;
  const std::string file = KnowledgeFile(path);
  int width = 0;
  int height = 0;
  int channels = 0;
  int bits = 0;
  if (im_file_get_size(file.c_str(), kBmp, &width, &height, &channels, &bits) != 0) return false;

  tImage* image = im_create(1, width, height);
  // An image whose file cannot be read is not released, as the interface behaves.
  if (im_file_read(image, file.c_str(), kBmp) != 0) return false;
  TrainIt(image);
  im_delete(image);
  return true;
}
