#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "cli/find_report.h"
#include "cli/messages.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;

namespace {

// Of UTF-8 text: every byte but the continuations begins a character.
std::size_t NumCharacters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::string DegreesRange(const shape::FindOptions& options) {
  const double from = Degrees(options.angle_start);
  return fmt::format("{:g} to {:g}", from, from + Degrees(options.angle_extent));
}

class TextReport : public FindReport {
 public:
  TextReport(const FindContext& context, Report& report) : context_(context), report_(report) {
    for (const std::string& scene : context.scenes)
      scene_width_ = std::max(scene_width_, NumCharacters(Printable(scene)));
    for (const FindContext::Pattern& pattern : context.patterns)
      pattern_width_ = std::max(pattern_width_, NumCharacters(Printable(pattern.path)));
    PrintHead();
  }

  void Add(const FindOutcome& outcome) override {
    ++num_looked_;
    if (outcome.IsFound()) ++num_found_;
    if (outcome.Status() == std::string("not_found")) ++num_not_found_;
    if (outcome.result && outcome.result->timed_out) ++num_out_of_time_;
    if (!outcome.result || outcome.result->matches.empty()) return PrintRow(outcome, nullptr);
    for (const FoundMatch& match : outcome.result->matches)
      PrintRow(outcome, &match);
  }

  void End() override {
    if (num_looked_ > 1)
      report_.Print(fmt::format("\nfound in {} of {} {}\n", num_found_, num_looked_,
                                context_.HasSeveralPatterns() ? "searches" : "scenes"));
    if (num_not_found_ > 0) PrintWhatMayHelp();
    if (num_out_of_time_ > 0) PrintOutOfTime();
  }

 private:
  bool IsOfShapes() const { return context_.options.engine == Engine::kShapes; }

  void PrintHead() {
    PrintStart("scene", "pattern", "status");
    if (IsOfShapes())
      PrintOfShapes(
          {"x", "y", "angle deg", "angle rad", "scale", "score", "coverage", "sd px", "time ms"});
    else
      PrintOfSegments({"x", "y", "angle deg", "angle rad", "scale", "score", "time ms"});
  }

  void PrintRow(const FindOutcome& outcome, const FoundMatch* match) {
    PrintStart(Printable(outcome.scene), Printable(context_.PatternOf(outcome)), outcome.Status());
    const std::string time = outcome.result ? TimeText(*outcome.result) : "-";
    if (IsOfShapes())
      PrintOfShapes(match ? RowOfShapes(*match, time)
                          : ShapeRow{"-", "-", "-", "-", "-", "-", "-", "-", time});
    else
      PrintOfSegments(match ? RowOfSegments(*match, time)
                            : SegmentRow{"-", "-", "-", "-", "-", "-", time});
  }

  std::string TimeText(const FindResult& result) const {
    return Fixed(result.time_ms, IsOfShapes() ? 2 : 1);
  }

  /// The columns before the pose.
  void PrintStart(const std::string& scene, const std::string& pattern, const std::string& status) {
    const auto padding = [](const std::string& text, std::size_t width) {
      return std::string(width - std::min(width, NumCharacters(text)), ' ');
    };
    report_.Print(scene + padding(scene, scene_width_) + "  ");
    if (context_.HasSeveralPatterns())
      report_.Print(pattern + padding(pattern, pattern_width_) + "  ");
    report_.Print(fmt::format("{:{}}", status, IsOfShapes() ? 14 : 18));
  }

  using ShapeRow = std::array<std::string, 9>;
  using SegmentRow = std::array<std::string, 7>;

  static ShapeRow RowOfShapes(const FoundMatch& match, const std::string& time) {
    const Similarity& pose = match.scene_from_pattern;
    const shape::Match& details = *match.details;
    const double deviation_px = std::sqrt((details.covariance[0] + details.covariance[5]) / 2);
    return {Fixed(pose.x, 3),
            Fixed(pose.y, 3),
            match.HasAngle() ? Fixed(Degrees(pose.angle), 4) : "any",
            match.HasAngle() ? Fixed(pose.angle, 6) : "any",
            Fixed(pose.scale, 5),
            Fixed(match.score, 4),
            Fixed(details.coverage, 3),
            Fixed(deviation_px, 4),
            time};
  }

  static SegmentRow RowOfSegments(const FoundMatch& match, const std::string& time) {
    const Similarity& pose = match.scene_from_pattern;
    return {Fixed(pose.x, 2),
            Fixed(pose.y, 2),
            Fixed(Degrees(pose.angle), 3),
            Fixed(pose.angle, 5),
            Fixed(pose.scale, 4),
            Fixed(match.score, 2),
            time};
  }

  void PrintOfShapes(const ShapeRow& c) {
    report_.Print(fmt::format("  {:>9}  {:>9}  {:>10}  {:>10}  {:>8}  {:>7}  {:>8}  {:>7}  {:>8}\n",
                              c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]));
  }

  void PrintOfSegments(const SegmentRow& c) {
    report_.Print(fmt::format("  {:>8}  {:>8}  {:>9}  {:>9}  {:>7}  {:>6}  {:>8}\n", c[0], c[1],
                              c[2], c[3], c[4], c[5], c[6]));
  }

  void PrintWhatMayHelp() {
    const shape::FindOptions& o = context_.options.shapes;
    report_.Print(
        fmt::format("\nNot found means: no place has a score of {:g} or more with scales from {:g} "
                    "to {:g} and\n"
                    "angles from {} degrees. --scale, --angle and --min-score change that.\n",
                    o.min_score, o.min_scale, o.max_scale, DegreesRange(o)));
  }

  void PrintOutOfTime() {
    report_.Print(fmt::format(
        "\nThe time of {:g} ms ran out in {} scene{}; a longer --timeout{} or a narrower\n--scale "
        "may find the pattern there.\n",
        context_.options.TimeoutMs(), num_out_of_time_, num_out_of_time_ > 1 ? "s" : "",
        IsOfShapes() ? "" : " (up to 3.999s)"));
  }

  const FindContext& context_;
  Report& report_;
  std::size_t scene_width_ = 5;
  std::size_t pattern_width_ = 7;
  int num_looked_ = 0;
  int num_found_ = 0;
  int num_not_found_ = 0;
  int num_out_of_time_ = 0;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindTextReport(const FindContext& context, Report& report) {
  return std::make_unique<TextReport>(context, report);
}

}  // namespace orvandel::cli
