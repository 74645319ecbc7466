#include "bench/opencv_canny.h"

#ifdef ORVANDEL_BENCH_OPENCV

#include <map>
#include <utility>

#include <opencv2/imgproc.hpp>

#include "bench/stopwatch.h"

namespace orvandel::bench {

struct OpenCvCanny::Outputs {
  std::map<std::pair<int, int>, cv::Mat> by_size;
};

OpenCvCanny::OpenCvCanny() : outputs_(std::make_shared<Outputs>()) {
  cv::setNumThreads(1);
}

double OpenCvCanny::operator()(const NamedImage& source) {
  constexpr double kLowThreshold = 50;
  constexpr double kHighThreshold = 100;
  constexpr int kAperture = 3;
  constexpr bool kL2Magnitude = true;
  const tImage& image = *source.image;
  // The image library's rows lie at equal distances.
  const std::size_t row_bytes = image.height > 1
                                    ? static_cast<std::size_t>(image.row[1] - image.row[0])
                                    : static_cast<std::size_t>(image.width);
  const cv::Mat input(image.height, image.width, CV_8UC1, image.row[0], row_bytes);
  cv::Mat& output = outputs_->by_size[{image.width, image.height}];
  output.create(image.height, image.width, CV_8UC1);
  return SecondsOf(
      [&] { cv::Canny(input, output, kLowThreshold, kHighThreshold, kAperture, kL2Magnitude); });
}

}  // namespace orvandel::bench

#else

namespace orvandel::bench {

struct OpenCvCanny::Outputs {};
OpenCvCanny::OpenCvCanny() = default;
double OpenCvCanny::operator()(const NamedImage& /*source*/) {
  return 0;
}

}  // namespace orvandel::bench

#endif
