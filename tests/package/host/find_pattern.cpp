// A host as others write it: learns a pattern from one image, finds it in another. Exits with 0 when the pose is right.

#include <cmath>
#include <cstdio>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/qrsis.h"

namespace {

constexpr int kPatternSize = 100;
constexpr int kSceneSize = 240;
constexpr int kShiftX = 61;
constexpr int kShiftY = 87;

// A bright L with unequal legs: straight edges, and no symmetry that would leave the angle open.
void DrawPattern(tImage* image, int left, int top) {
  for (int y = 15; y < 85; ++y) {
    for (int x = 20; x < 80; ++x) {
      const bool inside = x < 45 || y >= 60;
      if (inside) image->row[top + y][left + x] = 200;
    }
  }
}

bool IsNear(const char* what, double actual, double expected, double tolerance) {
  const bool is_near = std::fabs(actual - expected) <= tolerance;  // false for not-a-number
  std::printf("%s %.3f, expected %.3f: %s\n", what, actual, expected, is_near ? "good" : "WRONG");
  return is_near;
}

bool FindsThePattern(QRSIS& search, tImage* pattern, tImage* scene) {
  search.Initialize();
  if (search.TrainIt(pattern) != 0 || search.LookForIt(scene) != 0) return false;

  double reference_x = 0, reference_y = 0;
  search.GetPatternRef(&reference_x, &reference_y);
  double x = 0, y = 0, angle = 0, scale = 0, score = 0;
  search.GetFoundPattData(&x, &y, &angle, &scale, &score);
  // The scene is the pattern shifted by whole pixels. The refinement ends with steps below these.
  const bool position =
      IsNear("x", x, reference_x + kShiftX, 1.0) & IsNear("y", y, reference_y + kShiftY, 1.0);
  const bool shape = IsNear("angle", angle, 0.0, 0.02) & IsNear("scale", scale, 1.0, 0.02);
  return position && shape && IsNear("score", score, 100.0, 20.0);
}

}  // namespace

int main() {
  tImage* pattern = im_create(1, kPatternSize, kPatternSize);
  tImage* scene = im_create(1, kSceneSize, kSceneSize);
  if (pattern == nullptr || scene == nullptr) return 2;
  DrawPattern(pattern, 0, 0);
  DrawPattern(scene, kShiftX, kShiftY);

  QRSIS search;
  const bool found = FindsThePattern(search, pattern, scene);
  const bool has_contours = ctd_contour_count(search.GetCrawlerSceneData()) > 0;
  im_delete(scene);
  im_delete(pattern);
  return found && has_contours ? 0 : 1;
}
