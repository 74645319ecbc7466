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

/// A plot with linear axes that begin at 0; up to six series.
struct Plot {
  std::string title;
  std::string x_label;
  std::string y_label;
  std::vector<PlotSeries> series;
};

/// The plot as an SVG document.
std::string SvgOf(const Plot& plot);

}  // namespace orvandel::bench
