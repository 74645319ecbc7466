#include "fuzz/contour_stages.h"

#include "fuzz/files.h"
#include "fuzz/require.h"
#include "orvandel/classic/checked_contour_file.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/line_extracter.h"
#include "orvandel/classic/patt_verify.h"
#include "platform/image_ptr.h"
#include "tests/support/contour_sets.h"

namespace orvandel::fuzz {
namespace {

using test::Fields;

Bytes SavedBytes(const ContourHandle& set) {
  static const ScratchFolder folder;
  ORVANDEL_REQUIRE(ctd_save(set.get(), folder.File("saved.ctd").c_str()) == 0);
  return ReadBytes(folder.File("saved.ctd"));
}

ContourHandle OneContour() {
  return test::MakeSet({{{{1, 2}, {3, 4}}, true}});
}

/// Resampling lays a point on each pixel, so that memory stays in proportion to the file.
void Condition(const ContourHandle& set) {
  const int num_points = ctd_point_count(set.get());
  ctd_average(set.get());
  ctd_resample(set.get());
  ORVANDEL_REQUIRE(ctd_point_count(set.get()) <= (kMostPixelsPerPoint + 6) * num_points);
  ctd_sort(set.get(), 1);
}

void Draw(const ContourHandle& set) {
  static const ScratchFolder folder;
  const ImagePtr image(im_create(1, 40, 30));
  ctd_create_img(set.get(), image.get(), 3.5, -2.0, 200, 100);
  const bool is_short = ctd_point_count(set.get()) < 200;
  if (is_short) ORVANDEL_REQUIRE(ctd_dump(set.get(), folder.File("dump.txt").c_str()) == 0);
  double min_x, min_y, max_x, max_y;
  ctd_bbox(set.get(), &min_x, &min_y, &max_x, &max_y);
  const bool is_small = max_x < 300 && max_y < 300;
  if (is_small) ctd_save_img(set.get(), folder.File("image.bmp").c_str());
}

/// Takes the set as pattern and as scene.
void Match(const ContourHandle& set) {
  CEdgeImgComplement edges;
  ORVANDEL_REQUIRE(edges.SetSize(40, 30) == 0);
  ORVANDEL_REQUIRE(edges.Refill(set.get()) == ctd_contour_count(set.get()));
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(set.get(), 0.25, 100);
  double cx, cy;
  ctd_centroid(set.get(), &cx, &cy);
  const double sparse = verifier.ScoreAtVerifyPoints(&edges, cx, cy, 0.1, 1.0, cx, cy);
  const double dense = verifier.ScoreAlongContours(set.get(), &edges, cx, cy, 0.0, 1.0, cx, cy, 1);
  ORVANDEL_REQUIRE(!(sparse < 0 || sparse > 100 || dense < 0 || dense > 100));
}

void UseContours(const ContourHandle& set) {
  Draw(set);
  Condition(set);
  CLineExtracter extracter;
  const int num_segments = extracter.Extract(set.get());
  ORVANDEL_REQUIRE(num_segments == static_cast<int>(extracter.GetSegments().size()));
  Match(set);
  const ContourHandle copy = test::MakeEmptySet();
  ctd_copy(set.get(), copy.get());
  ORVANDEL_REQUIRE(SavedBytes(copy) == SavedBytes(set));
}

}  // namespace

void ReadAndUseContours(const std::string& path) {
  const ContourHandle checked = OneContour();
  const ContourFileError error = LoadContoursChecked(checked.get(), path.c_str());
  if (error.IsError()) {
    ORVANDEL_REQUIRE(SavedBytes(checked) == SavedBytes(OneContour()));
    return;
  }
  const ContourHandle trusting = OneContour();
  ORVANDEL_REQUIRE(ctd_load(trusting.get(), path.c_str()) == 0);
  ORVANDEL_REQUIRE(SavedBytes(checked) == SavedBytes(trusting));
  ORVANDEL_REQUIRE(SavedBytes(checked) == ReadBytes(path));
  UseContours(checked);
}

}  // namespace orvandel::fuzz
