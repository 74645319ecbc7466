#include "bench/svg_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

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

/// One axis: from values to shares of its length.
class Axis {
 public:
  explicit Axis(bool is_log) : is_log_(is_log) {}

  bool Shows(double value) const { return !is_log_ || value > 0; }

  void MakeRoomFor(double value) {
    if (!Shows(value)) return;
    least_ = std::min(least_, value);
    most_ = std::max(most_, value);
  }

  /// Once there is room for all.
  void Round() {
    if (!is_log_) {
      least_ = 0;
      if (!(most_ > 0)) most_ = 1;
      return;
    }
    if (!(most_ > 0)) least_ = most_ = 1;
    constexpr double kRounding = 1e-9;
    least_ = std::pow(10.0, std::floor(std::log10(least_) + kRounding));
    most_ = std::pow(10.0, std::ceil(std::log10(most_) - kRounding));
    if (most_ <= least_) most_ = 10 * least_;
  }

  double ShareOf(double value) const {
    return is_log_ ? std::log(value / least_) / std::log(most_ / least_) : value / most_;
  }

  std::vector<double> Ticks() const {
    std::vector<double> ticks;
    if (is_log_) {
      for (double tick = least_; tick <= most_ * 1.001; tick *= 10)
        ticks.push_back(tick);
    } else {
      const double step = TickStep(most_);
      for (double tick = 0; tick <= most_; tick += step)
        ticks.push_back(tick);
    }
    return ticks;
  }

 private:
  bool is_log_;
  double least_ = std::numeric_limits<double>::infinity();
  double most_ = 0;
};

class Drawing {
 public:
  explicit Drawing(const Plot& plot) : plot_(plot), x_(plot.has_log_x), y_(plot.has_log_y) {
    for (const PlotSeries& series : plot.series) {
      for (const PlotPoint& point : series.points) {
        x_.MakeRoomFor(point.x);
        y_.MakeRoomFor(point.y);
      }
    }
    x_.Round();
    y_.Round();
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
  double X(double x) const { return kLeft + x_.ShareOf(x) * (kWidth - kLeft - kRight); }
  double Y(double y) const {
    return kHeight - kBottom - y_.ShareOf(y) * (kHeight - kTop - kBottom);
  }

  std::string Axes() const {
    constexpr double kFloor = kHeight - kBottom;
    std::string svg;
    for (const double x : x_.Ticks()) {
      svg += Line(X(x), kFloor, X(x), kTop, "#dddddd");
      svg += Text(X(x), kFloor + 18, "middle", Number(x));
    }
    for (const double y : y_.Ticks()) {
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
      if (!x_.Shows(point.x) || !y_.Shows(point.y)) continue;
      svg += "<circle cx='" + Number(X(point.x)) + "' cy='" + Number(Y(point.y)) + "' r='3.5'/>\n";
    }
    const double y = kTop + 14 + kRowOfLegend * static_cast<double>(index);
    svg += "<circle cx='" + Number(kLeft + 16) + "' cy='" + Number(y - 4) + "' r='5'/>\n";
    return svg + Text(kLeft + 28, y, "start", series.name) + "</g>\n";
  }

  const Plot& plot_;
  Axis x_;
  Axis y_;
};

}  // namespace

std::string SvgOf(const Plot& plot) {
  return Drawing(plot).Svg();
}

}  // namespace orvandel::bench
