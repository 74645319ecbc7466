/* A host in C that loads the DLL by itself: the edge detector's functions are found by their plain
   names, and find a step. Exits with 0 when all edge points are right. */

#include <stdint.h>
#include <stdio.h>

#include <windows.h>

enum { kWidth = 12, kHeight = 8, kNumPixels = kWidth * kHeight, kStepColumn = 6 };

struct image {
  int32_t type;
  int32_t width;
  int32_t height;
  uint8_t** row;
};

/* As a C++ host's CEdgeImgComplement lies in memory. The detector calls none of its functions. */
struct edge_record {
  void* functions;
  double* x;
  double* y;
  double* g;
  uint8_t* valid;
  int32_t count;
  int32_t width;
  int32_t height;
  int32_t map_size;
};

typedef int (*sub_canny_function)(struct image* image, int threshold, struct edge_record* edges);
typedef void (*table_function)(void);

static uint8_t pixels[kHeight][kWidth];
static uint8_t* rows[kHeight];
static double x[kNumPixels], y[kNumPixels], g[kNumPixels];
static uint8_t valid[kNumPixels];

/* Dark on the left, grey 99 from column 6 on. */
static struct image draw_step(void) {
  struct image image = {1, kWidth, kHeight, rows};
  for (int r = 0; r < kHeight; ++r) {
    rows[r] = pixels[r];
    for (int c = kStepColumn; c < kWidth; ++c)
      pixels[r][c] = 99;
  }
  return image;
}

/* The step is seen from both sides, at the border of columns 5 and 6. Smoothed, its gradient has
   the magnitudes 23 46 46 23 in columns 4 to 7. A parabola through 23 46 46 peaks half a pixel to
   the right, stored as 255/256 of the pixel; one through 46 46 23 peaks at the left border. Two
   rows and columns all around have no point. It gets brighter to the right, so the direction is
   0. */
static int num_wrong(const struct edge_record* edges) {
  int wrong = 0;
  for (int cell = 0; cell < kNumPixels; ++cell) {
    const int r = cell / kWidth, c = cell % kWidth;
    const int is_edge = r >= 2 && r < kHeight - 2 && (c == kStepColumn - 1 || c == kStepColumn);
    const double expected_x = c == kStepColumn ? kStepColumn : kStepColumn - 1.0 / 256;
    if (edges->valid[cell] != is_edge || pixels[r][c] != (is_edge ? 255 : 0)) ++wrong;
    if (is_edge &&
        (edges->x[cell] != expected_x || edges->y[cell] != r + 127.0 / 256 || edges->g[cell] != 0))
      ++wrong;
  }
  return wrong;
}

int main(void) {
  HMODULE library = LoadLibraryA("orvandel.dll");
  if (library == NULL) return 2;
  /* Through void (*)(void), the type that stands for any function. */
  const sub_canny_function sub_canny =
      (sub_canny_function)(table_function)GetProcAddress(library, "SubCanny");
  const table_function make_tables =
      (table_function)GetProcAddress(library, "InitalizeSubCannyTable");
  const table_function delete_tables =
      (table_function)GetProcAddress(library, "DeleteSubCannyTable");
  if (sub_canny == NULL || make_tables == NULL || delete_tables == NULL) return 3;
  if (GetProcAddress(library, "ctd_create") != NULL)
    return 4; /* C++ functions go by decorated names */

  struct image image = draw_step();
  struct edge_record edges = {NULL, x, y, g, valid, 0, kWidth, kHeight, kNumPixels};
  make_tables();
  const int result = sub_canny(&image, 10, &edges);
  delete_tables();
  const int wrong = num_wrong(&edges);
  printf("SubCanny returned %d, counted %d edge points; %d cells are wrong\n", result,
         (int)edges.count, wrong);
  FreeLibrary(library);
  return result == 0 && edges.count == 2 * (kHeight - 4) && wrong == 0 ? 0 : 1;
}
