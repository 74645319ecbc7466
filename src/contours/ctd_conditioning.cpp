// The `ctd_` functions that find contours in images and condition them.

#include <new>

#include "contours/crawl.h"
#include "contours/crawler_adapter.h"
#include "contours/ctd_status.h"
#include "contours/edge_strength.h"
#include "contours/extents.h"
#include "contours/resampling.h"
#include "contours/smoothing.h"
#include "contours/sorting.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/mvtools_i.h"
#include "platform/image_ptr.h"

using orvandel::SetOf;
using orvandel::ViewOf;

namespace {

bool IsGrey(const tImage* image) {
  return image != nullptr && image->type == 1;
}

bool CanBeCrawled(const tImage* image) {
  return IsGrey(image) && image->width < orvandel::kCrawledSizeLimit &&
         image->height < orvandel::kCrawledSizeLimit;
}

/// Gives the coordinate that is extreme, and where it is wanted its partner.
double ExtremeOf(const orvandel::Extreme& extreme, const double* partners, double* partner) {
  if (partner != nullptr && extreme.index) *partner = partners[*extreme.index];
  return extreme.value;
}

}  // namespace

int ctd_crawl(void* handle, tImage* image, int edge_threshold, int min_size, int max_size) {
  if (!CanBeCrawled(image)) return orvandel::kCtdNotGrey;

  CCrawler& set = SetOf(handle);
  set.edge_threshold = edge_threshold;
  set.min_size = min_size;
  set.max_size = max_size;
  try {
    if (set.edgeIm == nullptr) set.edgeIm = new CEdgeImgComplement;
    orvandel::StoreContours(orvandel::CrawlImage(orvandel::RowsOf(*image),
                                                 {edge_threshold, min_size, max_size}, *set.edgeIm),
                            set);
  } catch (const std::bad_alloc&) {
    // The set keeps its contours, and the status stays 0.
  }
  return orvandel::kCtdDone;
}

int ctd_compute_edge_strength(void* /*handle*/, tImage* image) {
  if (!IsGrey(image)) return orvandel::kCtdNotGrey;
  // A host may bring its own image and tools libraries: they copy, fill and count.
  const orvandel::ImagePtr source(im_duplicate(image));
  const orvandel::ImagePtr magnitudes(im_dup(image));
  if (!source || !magnitudes) return orvandel::kNoProposal;
  mvt_constant(magnitudes.get(), 0);
  const orvandel::GradientTables* tables = orvandel::AcquireGradientTables();
  if (tables == nullptr) return orvandel::kNoProposal;

  orvandel::ComputeMagnitudes(orvandel::RowsOf(*source), *tables, orvandel::RowsOf(*magnitudes));
  orvandel::MagnitudeHistogram counts;
  mvt_hist(magnitudes.get(), counts.data());
  return orvandel::ProposeEdgeThreshold(counts);
}

int ctd_average(void* handle) {
  orvandel::SmoothContours(ViewOf(SetOf(handle)));
  return orvandel::kCtdDone;
}

int ctd_resample(void* handle) {
  CCrawler& set = SetOf(handle);
  const orvandel::ContourSetView contours = ViewOf(set);
  if (contours.NumPoints() == 0) return orvandel::kCtdDone;
  try {
    orvandel::StorePoints(orvandel::ResampleContours(contours, {set.step, set.min_dist}), set);
  } catch (const std::bad_alloc&) {
    // The set is as it was.
  }
  return orvandel::kCtdDone;
}

int ctd_sort(void* handle, int descending) {
  using enum orvandel::ContourOrder;
  orvandel::SortContours(orvandel::Records(SetOf(handle)),
                         descending != 0 ? kLargestFirst : kSmallestFirst);
  return orvandel::kCtdDone;
}

int ctd_centroid(void* handle, double* cx, double* cy) {
  const orvandel::Point centroid = orvandel::Centroid(ViewOf(SetOf(handle)));
  *cx = centroid.x;
  *cy = centroid.y;
  return orvandel::kCtdDone;
}

double ctd_maxx(void* handle, double* other) {
  const auto contours = ViewOf(SetOf(handle));
  return ExtremeOf(orvandel::LargestOf(contours.x), contours.y.data(), other);
}

double ctd_minx(void* handle, double* other) {
  const auto contours = ViewOf(SetOf(handle));
  return ExtremeOf(orvandel::SmallestOf(contours.x), contours.y.data(), other);
}

double ctd_maxy(void* handle, double* other) {
  const auto contours = ViewOf(SetOf(handle));
  return ExtremeOf(orvandel::LargestOf(contours.y), contours.x.data(), other);
}

double ctd_miny(void* handle, double* other) {
  const auto contours = ViewOf(SetOf(handle));
  return ExtremeOf(orvandel::SmallestOf(contours.y), contours.x.data(), other);
}

void ctd_bbox(void* handle, double* min_x, double* min_y, double* max_x, double* max_y) {
  *min_x = ctd_minx(handle, nullptr);
  *min_y = ctd_miny(handle, nullptr);
  *max_x = ctd_maxx(handle, nullptr);
  *max_y = ctd_maxy(handle, nullptr);
}
