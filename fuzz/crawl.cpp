// Edges and contours of images of any size and content, with any threshold and size limits. Every
// stage gives what its reference form gives, at any level of vector instructions.

#include <gtest/gtest.h>

#include "fuzz/byte_source.h"
#include "fuzz/files.h"
#include "fuzz/images.h"
#include "fuzz/require.h"
#include "fuzz/target.h"
#include "orvandel/classic/checked_contour_file.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "platform/simd_level.h"
#include "tests/platform/host_image.h"
#include "tests/reference/chain_comparison.h"
#include "tests/support/contour_sets.h"

namespace orvandel::fuzz {
namespace {

struct Input {
  ImagePtr image;
  int threshold;
  int min_size;
  int max_size;
  SimdLevel level;
};

int ThresholdFrom(ByteSource& source) {
  const int kind = source.Byte();
  return kind < 8 ? source.Int32() : kind;
}

Input InputFrom(ByteSource source) {
  constexpr int kLongestSide = 72;
  Input input;
  const int width = source.InRange(1, kLongestSide);
  const int height = source.InRange(1, kLongestSide);
  input.threshold = ThresholdFrom(source);
  input.min_size = source.InRange(-2, 300);
  input.max_size = source.Byte() < 200 ? 100000 : source.InRange(-2, 300);
  const std::span<const SimdLevel> levels = SupportedSimdLevels();
  input.level = levels[static_cast<std::size_t>(source.Byte()) % levels.size()];
  const int num_rectangles = source.Byte() % 16;
  input.image = num_rectangles > 0 ? PaintedImage(source, width, height, num_rectangles)
                                   : TiledImage(source.Rest(), width, height);
  return input;
}

void CheckEdgeStrength(const ImagePtr& image) {
  const ImagePtr copy = test::CopyOf(image);
  const int strength = ctd_compute_edge_strength(nullptr, copy.get());
  ORVANDEL_REQUIRE(strength >= 1 && strength <= 255);
  for (int y = 0; y < image->height; ++y)
    ORVANDEL_REQUIRE(std::equal(image->row[y], image->row[y] + image->width, copy->row[y]));
}

/// Contours of an image whose rows lie apart: records cut the points without gap or overlap, and
/// the file of them is one that the checked reader takes.
void CheckContours(const Input& input) {
  static const ScratchFolder folder;
  test::HostImage image(input.image->width, input.image->height);
  for (int y = 0; y < input.image->height; ++y)
    std::copy_n(input.image->row[y], input.image->width, image.get()->row[y]);

  const ContourHandle set = test::MakeEmptySet();
  ORVANDEL_REQUIRE(
      ctd_crawl(set.get(), image.get(), input.threshold, input.min_size, input.max_size) == 0);
  for (int i = 0; i < ctd_contour_count(set.get()); ++i) {
    const int size = ctd_contour_size(set.get(), i);
    ORVANDEL_REQUIRE(size >= input.min_size && size <= input.max_size);
  }
  const std::string path = folder.File("set.ctd");
  ORVANDEL_REQUIRE(ctd_save(set.get(), path.c_str()) == 0);
  ORVANDEL_REQUIRE(!LoadContoursChecked(set.get(), path.c_str()).IsError());
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvandel;
  testing::GTEST_FLAG(break_on_failure) = true;
  const fuzz::Input input = fuzz::InputFrom({data, size});
  ForceSimdLevel(input.level);
  fuzz::CheckEdgeStrength(input.image);
  fuzz::CheckContours(input);
  test::ExpectSameStages(input.image, input.threshold);
  return 0;
}
