#pragma once

#include <map>
#include <utility>
#include <vector>

#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "bench/workload.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"
#include "search/contour_preparation.h"
#include "tests/reference/pattern_search.h"

// From an image to line segments, the library's way and the reference form's, with the parameters that
// searches have by default. Buffers stay from run to run, those of each image size by themselves.
namespace orvandel::bench {

class LibrarySegments {
 public:
  double operator()(const NamedImage& input) {
    Buffers& buffers = buffers_[{input.image->width, input.image->height}];
    tImage* image = buffers.image.Restored(*input.image);
    void* set = buffers.contours.get();
    const double seconds = SecondsOf([&] {
      PrepareContours(set, image, {});
      buffers.lines.Extract(set);
    });
    num_contours_ = ctd_contour_count(set);
    num_segments_ = static_cast<int>(buffers.lines.GetSegments().size());
    return seconds;
  }

  /// Of the last image.
  int num_contours() const { return num_contours_; }
  int num_segments() const { return num_segments_; }

 private:
  struct Buffers {
    WorkingCopy image;
    ContourHandle contours{ctd_create()};
    CLineExtracter lines;
  };
  std::map<std::pair<int, int>, Buffers> buffers_;
  int num_contours_ = 0;
  int num_segments_ = 0;
};

class ReferenceSegments {
 public:
  double operator()(const NamedImage& input) {
    Buffers& buffers = buffers_[{input.image->width, input.image->height}];
    tImage* image = buffers.image.Restored(*input.image);
    void* set = buffers.contours.get();
    return SecondsOf([&] {
      test::PrepareContours(test::kReferenceStages, set, image, {});
      segments_ = test::kReferenceStages.extract_segments(set);
    });
  }

 private:
  struct Buffers {
    WorkingCopy image;
    ContourHandle contours{ctd_create()};
  };
  std::vector<CLineSegment> segments_;
  std::map<std::pair<int, int>, Buffers> buffers_;
};

}  // namespace orvandel::bench
