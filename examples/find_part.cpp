// The least that a host needs: learn a pattern from one image and find it in another.
//
//   find_part PATTERN SCENE        exit code 0 found, 1 not found, 2 an image cannot be used

#include <cstdio>
#include <memory>

#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/qrsis.h"

using Image = std::unique_ptr<tImage, decltype(&im_delete)>;

/// Reads an image file as 8-bit grey; null when it cannot be read.
static Image ReadImage(const char* path) {
  constexpr int kByExtension = 0;
  int width = 0, height = 0, channels = 0, bits = 0;
  im_file_get_size(path, kByExtension, &width, &height, &channels, &bits);
  Image image(im_create(1, width, height), im_delete);  // null for the size 0 x 0 of a failure
  if (im_file_read(image.get(), path, kByExtension) != 0) image.reset();
  return image;
}

static int Fail(const char* reason) {
  std::fprintf(stderr, "find_part: %s\n", reason);
  return 2;
}

int main(int argc, char** argv) {
  if (argc != 3) return Fail("usage: find_part PATTERN SCENE");
  const Image pattern = ReadImage(argv[1]);
  const Image scene = ReadImage(argv[2]);
  if (!pattern || !scene) return Fail("cannot read both images");

  QRSIS search;
  search.Initialize();
  search.SetMinMaxScale(0.5, 2.0);  // sizes to look for, relative to the pattern's

  // Training and search overwrite their image: copy one with im_duplicate to keep its grey values.
  if (search.TrainIt(pattern.get()) != 0) return Fail("the pattern needs straight, clear edges");
  const bool searched = search.LookForIt(scene.get()) == 0;  // false: nothing to compare with

  // The pose tells where the pattern's reference point, the mean of its contour points, lies.
  // The middle of the pixel in column c and row r is near (c + 0.5, r + 0.5).
  double x = 0, y = 0, angle = 0, scale = 0, score = 0;
  if (searched) search.GetFoundPattData(&x, &y, &angle, &scale, &score);

  constexpr double kAcceptScore = 80;  // percent of the pattern's contour; a best guess has less
  if (!(score >= kAcceptScore)) {
    std::printf("not found (best score %.0f %%)\n", score);
    return 1;
  }
  constexpr double kDegrees = 57.295779513082323;
  std::printf("found at x %.2f  y %.2f  angle %.2f deg  scale %.3f  score %.0f %%\n", x, y,
              angle * kDegrees, scale, score);
  return 0;
}
