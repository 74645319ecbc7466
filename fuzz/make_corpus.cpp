// Writes the inputs that the fuzzer starts from: for each target a few small ones that reach far.
// Usage: fuzz_make_corpus FOLDER

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/imgutil_i.h"
#include "tests/platform/jpeg_builder.h"
#include "tests/platform/png_builder.h"
#include "tests/support/contour_sets.h"
#include "tests/support/images.h"

namespace orvandel::test {
namespace {

namespace fs = std::filesystem;

/// The inputs of one target.
class Corpus {
 public:
  Corpus(const fs::path& folder, const char* target) : folder_(folder / target) {
    fs::create_directories(folder_);
  }
  std::string File(const std::string& name) const { return (folder_ / name).string(); }
  void Write(const std::string& name, const Bytes& bytes) const {
    WriteBytes(folder_ / name, bytes);
  }
  void Write(const std::string& name, const std::string& text) const {
    WriteBytes(folder_ / name, BytesOf(text));
  }

 private:
  fs::path folder_;
};

Bytes Le16(int value) {
  return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

Bytes Le32(int value) {
  return Le16(value) + Le16(value >> 16);
}

/// An uncompressed bitmap of two by two pixels, with rows of four or eight bytes.
Bytes Bmp(int bits, const Bytes& palette, const Bytes& pixels, int height = 2) {
  const int palette_size = static_cast<int>(palette.size());
  const int offset = 54 + palette_size;
  return BytesOf("BM") + Le32(offset + static_cast<int>(pixels.size())) + Le32(0) + Le32(offset) +
         Le32(40) + Le32(2) + Le32(height) + Le16(1) + Le16(bits) + Le32(0) +
         Le32(static_cast<int>(pixels.size())) + Le32(0) + Le32(0) + Le32(palette_size / 4) +
         Le32(0) + palette + pixels;
}

void MakeBmpFiles(const Corpus& corpus) {
  const Bytes two_colours = {0, 0, 0, 0, 10, 20, 30, 0};
  corpus.Write("palette.bmp", Bmp(8, two_colours, {0, 1, 0, 0, 1, 0, 0, 0}));
  corpus.Write("top_down.bmp", Bmp(8, two_colours, {0, 1, 0, 0, 1, 0, 0, 0}, -2));
  corpus.Write("beyond_palette.bmp", Bmp(8, two_colours, {0, 2, 0, 0, 1, 0, 0, 0}));
  corpus.Write("colour.bmp", Bmp(24, {}, Bytes(16, 77)));
  corpus.Write("colour_and_alpha.bmp", Bmp(32, {}, Bytes(16, 88)));
}

void MakePngFiles(const Corpus& corpus) {
  corpus.Write("grey.png", Png{}.File());
  Png palette;
  palette.bit_depth = 2;
  palette.colour_type = 3;
  palette.before_data = PngChunk("PLTE", {1, 2, 3, 40, 50, 60, 7, 80, 9, 255, 254, 253});
  palette.rows = {{0x1b}, {0xe4}};
  corpus.Write("palette.png", palette.File());
  Png deep;
  deep.width = 1;
  deep.bit_depth = 16;
  deep.colour_type = 6;
  deep.rows = {Bytes(8, 33), Bytes(8, 44)};
  corpus.Write("deep.png", deep.File());
  Png zeros;
  zeros.width = 258;
  zeros.height = 1;
  corpus.Write("packed.png", Png::Signature() + zeros.Header() +
                                 PngChunk("IDAT", StreamOfZeros(1)) + PngChunk("IEND", {}));
  Png interlaced;
  corpus.Write("interlaced.png", Png::Signature() +
                                     PngChunk("IHDR", Be32(1) + Be32(1) + Bytes{8, 0, 0, 0, 1}) +
                                     PngChunk("IDAT", StoredStream({0, 9})) + PngChunk("IEND", {}));
}

/// Soft edges, so that all coefficients of a block are there.
ImagePtr WavyImage() {
  return MakeImage(20, 17, [](int x, int y) { return (x * x + 3 * x * y + 5 * y) % 256; });
}

void MakeJpegFiles(const Corpus& corpus) {
  corpus.Write("flat.jpg", FlatJpeg{}.File());
  FlatJpeg colour;
  colour.channels = 3;
  colour.scan = {0x48, 0x02, 0x0a, 0x7f};
  corpus.Write("three_channels.jpg", colour.File());
  FlatJpeg restarts;
  restarts.before_frame = JpegSegment(0xdd, {0, 1});
  corpus.Write("restarts.jpg", restarts.File());
  FlatJpeg no_bits;
  no_bits.precision = 0;
  corpus.Write("no_bits.jpg", no_bits.File());
  im_file_write(WavyImage().get(), corpus.File("wavy.jpg").c_str(), 0);
}

void MakePnmFiles(const Corpus& corpus) {
  corpus.Write("plain_grey.pnm", std::string("P2 # a comment\n3 2\n255\n0 1 2\n3 4 255\n"));
  corpus.Write("plain_colour.pnm", std::string("P3\n1 2\n15\n0 1 2 13 14 15\n"));
  corpus.Write("raw_grey.pnm", BytesOf("P5 2 2 200\n") + Bytes{0, 100, 150, 200});
  corpus.Write("raw_deep.pnm", BytesOf("P5 1 2 1000\n") + Bytes{0, 100, 3, 232});
  corpus.Write("raw_colour.pnm", BytesOf("P6\n#\n1 1\n255\n") + Bytes{1, 2, 3});
}

void MakeContourFiles(const Corpus& corpus) {
  ctd_save(MakeEmptySet().get(), corpus.File("empty.ctd").c_str());
  ctd_save(MakeSet({{{{1, 2, 0.5, 0}, {2, 2, 0.5, 1}, {3, 2.5, 1, 0}}, true}}).get(),
           corpus.File("one.ctd").c_str());
  const ContourHandle sorted = MakeSet({{{{0, 9}}, false}, {{{1, 1}, {9, 9}}, false}});
  ctd_sort(sorted.get(), 1);
  ctd_save(sorted.get(), corpus.File("sorted.ctd").c_str());
}

/// What contour_points.cpp makes of bytes: an order, then per contour its size and flag, the first
/// position and a step, direction and kind for each point.
Bytes ContourBytes(std::uint8_t num_points, std::uint8_t closed, const Bytes& step) {
  Bytes bytes = {static_cast<std::uint8_t>(2 * (num_points - 1) + closed), 20, 15};
  for (int i = 0; i < num_points; ++i)
    bytes = std::move(bytes) + step;
  return bytes;
}

void MakeContourPoints(const Corpus& corpus) {
  const Bytes right = {8, 16, 0, 50};
  const Bytes down = {8, 0, 16, 0};
  corpus.Write("straight", Bytes{0} + ContourBytes(20, 0, right));
  corpus.Write("two", Bytes{1} + ContourBytes(12, 0, right) + ContourBytes(14, 1, down));
  corpus.Write("crowded", Bytes{2} + ContourBytes(9, 0, {15, 2, 1, 7}));
  corpus.Write("sparse", Bytes{2} + ContourBytes(7, 1, {8, 120, 120, 90}));
  corpus.Write("anywhere", Bytes{0} + ContourBytes(2, 0, {0, 9, 2, 13}));
}

/// What crawl.cpp makes of bytes: width, height, threshold, size limits, vector instructions, then
/// rectangles or pixels.
void MakeImages(const Corpus& corpus) {
  const Bytes image_40_by_30 = {0, 39, 0, 29};
  const Bytes threshold_16 = {16};
  const Bytes any_size = {0, 5, 0};
  const Bytes head = image_40_by_30 + threshold_16 + any_size;
  corpus.Write("rectangles", head + Bytes{0, 2, 5, 5, 20, 15, 200, 15, 10, 20, 12, 90});
  corpus.Write("stripes", head + Bytes{1, 0, 0, 0, 0, 0, 255, 255, 255, 255});
  corpus.Write("noise", head + Bytes{2, 0, 13, 200, 57, 91, 240, 5, 166, 33, 180, 77, 128});
  corpus.Write("flat", head);
  corpus.Write("low", Bytes{0, 71, 0, 3} + threshold_16 + any_size + Bytes{1, 0, 0, 250});
  corpus.Write("narrow", Bytes{0, 3, 0, 71} + Bytes{0, 0, 0, 0, 0} + any_size + Bytes{2, 0, 1, 90});
}

/// What search.cpp makes of bytes: threshold, size limits, accept score, scales or none, the read
/// at which time is up, then two images: size, number of rectangles, rectangles.
void MakePairs(const Corpus& corpus) {
  const Bytes pattern = Bytes{31, 27, 2} + Bytes{6, 6, 18, 6, 200} + Bytes{6, 6, 6, 14, 200};
  const Bytes scene = Bytes{55, 47, 2} + Bytes{20, 16, 18, 6, 200} + Bytes{20, 16, 6, 14, 200};
  const Bytes other = Bytes{50, 40, 1} + Bytes{10, 10, 30, 20, 120};
  const Bytes head = {16, 5, 0, 80};
  const Bytes default_scales = {0};
  corpus.Write("shifted", head + default_scales + Bytes{0, 40} + pattern + scene);
  corpus.Write("absent", head + default_scales + Bytes{0, 1} + pattern + other);
  corpus.Write("unreachable",
               Bytes{16, 5, 0, 120} + default_scales + Bytes{3, 0} + pattern + scene);
  corpus.Write("odd_scales", head + Bytes{1, 13, 11} + Bytes{0, 90} + pattern + scene);
  corpus.Write("nothing_to_learn", head + default_scales + Bytes{0, 9, 9, 9, 0, 9, 9, 0});
}

// What painted_scenes.h makes of bytes.

Bytes Size(int width, int height) {
  return {0, static_cast<std::uint8_t>(width - 1), 0, static_cast<std::uint8_t>(height - 1)};
}

/// An L with a window on dark ground: ground, number of rectangles, then left, top, width and height less one, grey.
Bytes PaintedPart() {
  return Bytes{40, 3} + Bytes{14, 10, 11, 43, 200} + Bytes{14, 42, 39, 11, 200} +
         Bytes{32, 16, 13, 13, 120};
}
Bytes NothingPainted() {
  return {40, 0};
}

/// Where a painting is seen: x and y with fractions in 1/256, angle in 1/40, scale and whether inverted.
Bytes Seen(std::uint8_t x, std::uint8_t y, std::uint8_t angle, std::uint8_t scale) {
  return {x, 60, y, 200, angle, scale};
}
constexpr std::uint8_t kFullScale = 38;
constexpr std::uint8_t kInverted = 192;

/// Layout, noise and its seed; a factor where there are 16 bits.
Bytes EightBits(std::uint8_t noise) {
  return {0, noise, 1};
}
Bytes SixteenBitsBottomUp(std::uint8_t noise) {
  return {1 + 2 + 4 * 3, noise, 99, 1};
}

/// What shape_edges.cpp makes of bytes: level, threshold or none, size, painting, where it is seen.
void MakeEdgeImages(const Corpus& corpus) {
  const Bytes usual_threshold = {1, 0};
  const Bytes image = Size(97, 80) + PaintedPart();
  const Bytes seen = Seen(45, 40, 20, kFullScale);
  corpus.Write("part", usual_threshold + image + seen + EightBits(2));
  corpus.Write("deep", usual_threshold + image + seen + SixteenBitsBottomUp(5));
  corpus.Write("all_points", Bytes{2, 1, 0} + image + seen + EightBits(40));
  corpus.Write("no_threshold", Bytes{2, 1, 13} + image + seen + EightBits(0));
  corpus.Write("sliver", usual_threshold + Size(140, 7) + PaintedPart() +
                             Seen(70, 3, 0, kFullScale) + EightBits(9));
}

Bytes PartToLearn() {
  return Size(68, 64) + PaintedPart() + EightBits(1);
}

/// What shape_learn.cpp makes of bytes: level, origin or none, whether there is a mask, the pattern, the mask's layout,
/// left, top, width, height and value.
void MakePatterns(const Corpus& corpus) {
  const Bytes no_origin = {0};
  const Bytes no_mask = {0};
  corpus.Write("part", Bytes{1} + no_origin + no_mask + PartToLearn());
  corpus.Write("origin_and_mask", Bytes{1} + Bytes{1, 60, 90, 5} + Bytes{1} + PartToLearn() +
                                      Bytes{14, 8, 4, 40, 60, 1});
  corpus.Write("all_masked", Bytes{2} + no_origin + Bytes{1} + PartToLearn());
  corpus.Write("origin_nowhere", Bytes{2} + Bytes{1, 11, 2} + no_mask + PartToLearn());
  corpus.Write("deep", Bytes{0} + no_origin + no_mask + Size(60, 60) + PaintedPart() +
                           SixteenBitsBottomUp(3));
  corpus.Write("noise",
               Bytes{2} + no_origin + no_mask + Size(40, 30) + NothingPainted() + EightBits(63));
  corpus.Write("flat",
               Bytes{2} + no_origin + no_mask + Size(40, 30) + NothingPainted() + EightBits(0));
}

/// What shape_find.cpp makes of bytes: level, which options are told, those, polarity, whether all are wild, the pattern,
/// then the scene: size, number of parts, ground, where they are seen, what is painted over them.
void MakeScenes(const Corpus& corpus) {
  constexpr std::uint8_t kSame = 0;
  constexpr std::uint8_t kMixed = 3;
  constexpr std::uint8_t kTame = 255;
  const Bytes defaults = {0, kMixed, kTame};
  const Bytes one = Size(130, 110) + Bytes{1, 70} + Seen(66, 55, 25, kFullScale);
  corpus.Write("one", Bytes{2} + defaults + PartToLearn() + one + NothingPainted() + EightBits(2));
  corpus.Write("covered", Bytes{1} + defaults + PartToLearn() + one + PaintedPart() + EightBits(4));
  corpus.Write("inverted", Bytes{0} + defaults + PartToLearn() + Size(120, 120) + Bytes{1, 150} +
                               Seen(60, 60, 200, kInverted + kFullScale) + NothingPainted() +
                               EightBits(2));
  corpus.Write("three", Bytes{1} + Bytes{2 + 16, 40, 60, 8, kSame, kTame} + PartToLearn() +
                            Size(140, 140) + Bytes{3, 50} + Seen(35, 35, 0, 10) +
                            Seen(100, 40, 60, 12) + Seen(60, 105, 130, 14) + NothingPainted() +
                            SixteenBitsBottomUp(2));
  corpus.Write("narrow_ranges", Bytes{2} + Bytes{1 + 2, 5, 12, 94, 3, kSame, kTame} +
                                    PartToLearn() + one + NothingPainted() + EightBits(2));
  corpus.Write("fixed", Bytes{2} + Bytes{1 + 2, 12, 0, 95, 0, kSame, kTame} + PartToLearn() + one +
                            NothingPainted() + EightBits(2));
  corpus.Write("hurry", Bytes{2} + Bytes{96, 20, kMixed, kTame} + PartToLearn() + one +
                            NothingPainted() + EightBits(2));
  corpus.Write("noise", Bytes{2} + Bytes{16, 0, kMixed, kTame} + PartToLearn() + Size(90, 70) +
                            Bytes{0, 128} + NothingPainted() + EightBits(63));
  corpus.Write("pixel", Bytes{2} + defaults + PartToLearn() + Size(1, 1));
  corpus.Write("wild", Bytes{2} + Bytes{0, kMixed, 0} + Bytes{9, 7, 6, 7, 0, 2, 3} +
                           Bytes{0, 0, 0} + PartToLearn() + one + NothingPainted() + EightBits(2));
}

void MakeCommandLines(const Corpus& corpus) {
  const std::string header = "case,pattern,scene,instance,cx,cy,angle_deg,scale\n";
  corpus.Write("help", std::string("--help\n"));
  corpus.Write(
      "find", std::string("find\n--engine\nsegments\np.bmp\ns.bmp\n--min-contour\n5\n--overlay\no\n"
                          "--verbose"));
  corpus.Write(
      "find_shapes",
      std::string("find\n--pattern\np.bmp\ns.bmp\n--angle\n-20,20\n--scale\n0.9,1.1\n"
                  "--max-matches\n3\n--max-overlap\n0.2\n--polarity\neither\n--threads\n2\n"
                  "--min-score\n0.2\n--overlay\no\n--zoom\n2\n--json"));
  corpus.Write(
      "find_json",
      std::string("find\n--engine\nsegments\n--json\n--knowledge\nk\ns.bmp\n--timeout\n20ms\n"
                  "--scale\n0.9,1.1\n--accept-score\n50\n--output\nj"));
  corpus.Write("find_csv",
               std::string("find\n--csv\np.bmp\n--pattern-rect\n1,1,24,20\ns.bmp\nx.png"));
  corpus.Write("train_shapes", std::string("train\np.bmp\n--overlay\no\n--zoom\n3\n--verbose"));
  corpus.Write("train",
               std::string("train\n--engine\nsegments\np.bmp\n--save\nn\n--edge-threshold\nauto"));
  corpus.Write("contours", std::string("contours\ns.bmp\n--raw\n--all\n--save\nc\n--dump\nd\n"
                                       "--draw\np.png\n--zoom\n2\n--max-contour\n900"));
  corpus.Write("lines", std::string("lines\ns.bmp\n--csv\n--draw\nl.png\n--verbose"));
  corpus.Write("evaluate", "evaluate\nsuite\n--cases\nc.csv\n--csv\n--overlay\no\n%%\n" + header +
                               "a,p.bmp,s.bmp,0,20.5,18,0,1\nb,p.bmp,s.bmp,-1,,,,\n");
  corpus.Write("mistakes", std::string("fnid\n--scale\n2,1\n--zoom\n99"));
}

}  // namespace
}  // namespace orvandel::test

int main(int argc, char** argv) {
  using namespace orvandel::test;
  if (argc != 2) return 2;
  const std::filesystem::path folder = argv[1];
  MakeBmpFiles({folder, "bmp_file"});
  MakePngFiles({folder, "png_file"});
  MakeJpegFiles({folder, "jpeg_file"});
  MakePnmFiles({folder, "pnm_file"});
  MakeContourFiles({folder, "contour_file"});
  MakeContourPoints({folder, "contour_points"});
  MakeImages({folder, "crawl"});
  MakePairs({folder, "search"});
  MakeEdgeImages({folder, "shape_edges"});
  MakePatterns({folder, "shape_learn"});
  MakeScenes({folder, "shape_find"});
  MakeCommandLines({folder, "tool"});
  return 0;
}
