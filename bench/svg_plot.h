#pragma once

#include <string>
#include <vector>

namespace orvandel::bench {

struct PlotPoint {
  double x = 0;
  double y = 0;
};

struct PlotSeries {
  std::string name;
  std::vector<PlotPoint> points;  ///< drawn as dots
};

/// A plot with axes that are linear and begin at 0, or logarithmic from one power of ten to another; up to six series.
struct Plot {
  std::string title;
  std::string x_label;
  std::string y_label;
  std::vector<PlotSeries> series;
  bool has_log_x = false;  ///< points that are not above 0 are left out then
  bool has_log_y = false;
};

/// The plot as an SVG document.
std::string SvgOf(const Plot& plot);

}  // namespace orvandel::bench
