#include "bench/svg_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace orvandel::bench {
namespace {

constexpr double kWidth = 720;
constexpr double kHeight = 440;
constexpr double kLeft = 70;
constexpr double kRight = 20;
constexpr double kTop = 40;
constexpr double kBottom = 60;
constexpr double kRowOfLegend = 18;

/// Apart for eyes that tell red from green badly, too.
constexpr std::array<const char*, 6> kColours = {"#0072b2", "#e69f00", "#009e73",
                                                 "#cc79a7", "#56b4e9", "#d55e00"};

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", value);
  return text;
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Text(double x, double y, const char* anchor, const std::string& text) {
  return "<text x='" + Number(x) + "' y='" + Number(y) + "' text-anchor='" + anchor + "'>" +
         Escaped(text) + "</text>\n";
}

std::string Line(double x1, double y1, double x2, double y2, const char* colour) {
  return "<line x1='" + Number(x1) + "' y1='" + Number(y1) + "' x2='" + Number(x2) + "' y2='" +
         Number(y2) + "' stroke='" + colour + "'/>\n";
}

/// 1, 2 or 5 times a power of ten, so that about five steps reach `most`.
double TickStep(double most) {
  const double power = std::pow(10.0, std::floor(std::log10(most / 5)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (power * factor * 5 >= most) return power * factor;
  }
  return power * 10;
}

class Drawing {
 public:
  explicit Drawing(const Plot& plot) : plot_(plot) {
    for (const PlotSeries& series : plot.series) {
      for (const PlotPoint& point : series.points) {
        most_x_ = std::max(most_x_, point.x);
        most_y_ = std::max(most_y_, point.y);
      }
    }
    if (most_x_ <= 0) most_x_ = 1;
    if (most_y_ <= 0) most_y_ = 1;
  }

  std::string Svg() const {
    std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " + Number(kWidth) +
                      " " + Number(kHeight) + "' font-family='sans-serif' font-size='13'>\n" +
                      "<rect width='100%' height='100%' fill='white'/>\n";
    svg += Text(kWidth / 2, kTop / 2 + 4, "middle", plot_.title);
    svg += Axes();
    for (std::size_t i = 0; i < plot_.series.size(); ++i)
      svg += Series(i);
    return svg + "</svg>\n";
  }

 private:
  double X(double x) const { return kLeft + x / most_x_ * (kWidth - kLeft - kRight); }
  double Y(double y) const { return kHeight - kBottom - y / most_y_ * (kHeight - kTop - kBottom); }

  std::string Axes() const {
    std::string svg;
    const double step_x = TickStep(most_x_);
    for (double x = 0; x <= most_x_; x += step_x) {
      svg += Line(X(x), Y(0), X(x), kTop, "#dddddd");
      svg += Text(X(x), Y(0) + 18, "middle", Number(x));
    }
    const double step_y = TickStep(most_y_);
    for (double y = 0; y <= most_y_; y += step_y) {
      svg += Line(kLeft, Y(y), kWidth - kRight, Y(y), "#dddddd");
      svg += Text(kLeft - 8, Y(y) + 4, "end", Number(y));
    }
    svg += Text(kWidth / 2, kHeight - 16, "middle", plot_.x_label);
    svg +=
        "<g transform='rotate(-90)'>" + Text(-kHeight / 2, 18, "middle", plot_.y_label) + "</g>\n";
    return svg;
  }

  std::string Series(std::size_t index) const {
    const PlotSeries& series = plot_.series[index];
    const char* colour = kColours[index % kColours.size()];
    std::string svg = "<g fill='" + std::string(colour) + "'>\n";
    for (const PlotPoint& point : series.points) {
      svg += "<circle cx='" + Number(X(point.x)) + "' cy='" + Number(Y(point.y)) + "' r='3.5'/>\n";
    }
    const double y = kTop + 14 + kRowOfLegend * static_cast<double>(index);
    svg += "<circle cx='" + Number(kLeft + 16) + "' cy='" + Number(y - 4) + "' r='5'/>\n";
    return svg + Text(kLeft + 28, y, "start", series.name) + "</g>\n";
  }

  const Plot& plot_;
  double most_x_ = 0;
  double most_y_ = 0;
};

}  // namespace

std::string SvgOf(const Plot& plot) {
  return Drawing(plot).Svg();
}

}  // namespace orvandel::bench
