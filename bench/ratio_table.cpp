#include "bench/ratio_table.h"

#include <cstddef>

#include "evaluation/number_text.h"
#include "evaluation/statistics.h"

namespace orvandel::bench {

using evaluation::Median;
using evaluation::Percentile;

namespace {

constexpr double kMillisecondsPerSecond = 1000;

/// Three significant digits.
std::string Number(double value) {
  return evaluation::Fixed(value, value < 1 ? 3 : value < 10 ? 2 : value < 100 ? 1 : 0);
}

std::string MedianAnd99th(const std::vector<double>& values) {
  return Number(Median(values)) + " / " + Number(Percentile(values, 99));
}

std::string Spread(const std::vector<double>& ratios) {
  return Number(Median(ratios)) + " | " + Number(Percentile(ratios, 0)) + " to " +
         Number(Percentile(ratios, 100));
}

std::string Row(const std::string& work, const std::string& against, const std::string& unit,
                const std::vector<double>& ours, const std::vector<double>& theirs) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    if (ours[i] > 0) ratios.push_back(theirs[i] / ours[i]);  // a scene may leave nothing to do
  }
  return "| " + work + " | " + std::to_string(theirs.size()) + " | " + unit + " | " +
         MedianAnd99th(ours) + " | " + against + " | " + MedianAnd99th(theirs) + " | " +
         Spread(ratios) + " |\n";
}

}  // namespace

void RatioTable::AddTimes(const std::string& work, const std::string& against,
                          const std::string& unit, const std::vector<Sample>& samples) {
  std::vector<double> ours;
  std::vector<double> theirs;
  for (const Sample& sample : samples) {
    ours.push_back(sample.times.ours_s * kMillisecondsPerSecond / sample.units);
    theirs.push_back(sample.times.theirs_s * kMillisecondsPerSecond / sample.units);
  }
  rows_.push_back(Row(work, against, unit, ours, theirs));
}

void RatioTable::AddCounts(const std::string& work, const std::string& against,
                           const std::string& unit, const std::vector<double>& ours,
                           const std::vector<double>& theirs) {
  rows_.push_back(Row(work, against, unit, ours, theirs));
}

std::string RatioTable::Markdown() const {
  std::string text =
      "| Work | Images | Unit | Orvandel, median / 99th percentile | Against | Its median / 99th "
      "percentile | Median ratio | Least to greatest ratio |\n|---|---|---|---|---|---|---|---|\n";
  for (const std::string& row : rows_)
    text += row;
  return text;
}

}  // namespace orvandel::bench
