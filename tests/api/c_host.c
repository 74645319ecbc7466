/* A host in C99 that knows nothing but the public header: edge points of a step, a part learnt and
   found again, and what is said about mistakes. Exits with 0 when all is as it should be. */

#include <math.h>
#include <stdio.h>
#include <string.h>

#include "orvandel/orvandel.h"
#include "tests/api/drawn_part.h"

enum { kSceneWidth = 320, kSceneHeight = 240 };

static int num_wrong = 0;

static void expect(int condition, const char* what) {
  if (condition) return;
  printf("wrong: %s (last message: %s)\n", what, orv_last_message());
  ++num_wrong;
}

static int is_near(double a, double b, double tolerance) {
  return fabs(a - b) <= tolerance;
}

/* Dark on the left, bright from column 16 on: an edge half way between columns 15 and 16. */
static void find_edges_of_a_step(void) {
  static uint8_t pixels[32 * 24];
  for (int i = 0; i < 32 * 24; ++i)
    pixels[i] = i % 32 < 16 ? 40 : 200;
  orv_image image;
  orv_image_init(&image, pixels, 32, 24, 8);
  orv_edges* edges = NULL;
  expect(orv_edges_create(&edges) == ORV_OK, "edges are created");
  expect(orv_edges_detect(edges, &image, NULL) == ORV_OK, "a step is no mistake");
  expect(orv_edges_count(edges) == 24 - 6, "a point a row but for the border");
  const orv_edge_point* points = orv_edges_points(edges);
  for (size_t i = 0; i < orv_edges_count(edges); ++i) {
    expect(points[i].x == 15.5F && points[i].y == (float)(i + 3), "position");
    expect(points[i].direction == 0 && points[i].strength == 60, "direction and strength");
  }
  expect(orv_edges_row_begin(edges, 3) == 0 && orv_edges_row_begin(edges, 4) == 1, "rows");

  orv_edge_options options;
  orv_edge_options_init(&options, sizeof options);
  options.least_strength = 60.5;
  expect(orv_edges_detect(edges, &image, &options) == ORV_OK, "a high threshold is no mistake");
  expect(orv_edges_count(edges) == 0 && orv_edges_points(edges) == NULL, "no points remain");
  orv_edges_destroy(edges);
}

static void find_a_part(void) {
  static uint8_t pattern_pixels[kPatternWidth * kPatternHeight];
  static uint16_t scene_pixels[kSceneWidth * kSceneHeight];
  draw_part_8(pattern_pixels, kPatternWidth, kPatternHeight, (kPatternWidth - 1) / 2.0,
              (kPatternHeight - 1) / 2.0, 0, 1);
  draw_part_16(scene_pixels, kSceneWidth, kSceneHeight, 171.3, 118.8, 0.7, 1.2);
  orv_image pattern_image, scene;
  orv_image_init(&pattern_image, pattern_pixels, kPatternWidth, kPatternHeight, 8);
  orv_image_init(&scene, scene_pixels, kSceneWidth, kSceneHeight, 16);

  orv_pattern* pattern = NULL;
  expect(orv_pattern_learn(&pattern_image, NULL, &pattern) == ORV_OK, "the part is learnt");
  orv_finder* finder = NULL;
  expect(orv_finder_create(&finder) == ORV_OK, "a finder is created");
  expect(orv_finder_find(finder, pattern, &scene, NULL) == ORV_OK, "the search runs");
  orv_pattern_destroy(pattern); /* the result stays */

  orv_result result;
  result.struct_size = sizeof result;
  expect(orv_finder_get_result(finder, &result) == ORV_OK, "there is a result");
  expect(result.num_matches == 1 && !result.timed_out && result.total_us > 0, "one match in time");
  orv_match match;
  match.struct_size = sizeof match;
  if (orv_finder_get_match(finder, 0, &match) == ORV_OK) {
    printf("found at %.3f %.3f, %.4f rad, %.5f, score %.3f\n", match.x, match.y, match.angle,
           match.scale, match.score);
    expect(is_near(match.x, 171.3, 0.05) && is_near(match.y, 118.8, 0.05), "where it is");
    expect(is_near(match.angle, 0.7, 0.001) && is_near(match.scale, 1.2, 0.001), "how it lies");
    expect(match.score > 0.8, "a good score");
    /* The centre of the pattern image is its origin. */
    const double* m = match.scene_from_pattern;
    const double u = (kPatternWidth - 1) / 2.0, v = (kPatternHeight - 1) / 2.0;
    expect(is_near(m[0] * u + m[1] * v + m[2], match.x, 1e-9), "the map's x");
    expect(is_near(m[3] * u + m[4] * v + m[5], match.y, 1e-9), "the map's y");
  } else {
    expect(0, "there is a match");
  }
  expect(orv_finder_get_match(finder, 1, &match) == ORV_INVALID_ARGUMENT,
         "there is no second match");
  orv_finder_destroy(finder);
}

static void make_mistakes(void) {
  orv_edges* edges = NULL;
  expect(orv_edges_create(NULL) == ORV_INVALID_ARGUMENT, "null for the handle");
  expect(orv_edges_create(&edges) == ORV_OK, "edges are created");
  expect(orv_edges_detect(edges, NULL, NULL) == ORV_INVALID_ARGUMENT, "null for the image");
  expect(strcmp(orv_last_message(), "The image is null.") == 0, "a sentence about it");
  expect(strcmp(orv_status_text(ORV_INVALID_ARGUMENT), "invalid argument") == 0, "words for it");
  orv_edges_destroy(edges);
  orv_edges_destroy(NULL);
}

int main(void) {
  printf("Orvandel %s\n", orv_version());
  find_edges_of_a_step();
  find_a_part();
  make_mistakes();
  return num_wrong == 0 ? 0 : 1;
}
