#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "cli/find_report.h"
#include "cli/messages.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;

namespace {

using Row = std::array<std::string, 9>;

Row RowOf(const SceneOutcome& outcome) {
  Row row = {Printable(outcome.scene), outcome.Status(), "-", "-", "-", "-", "-", "-", "-"};
  if (!outcome.result) return row;
  row[8] = Fixed(outcome.result->time_ms, 1);
  if (!outcome.result->HasPose()) return row;
  const Similarity& pose = outcome.result->scene_from_pattern;
  row[2] = Fixed(pose.x, 2);
  row[3] = Fixed(pose.y, 2);
  row[4] = Fixed(Degrees(pose.angle), 3);
  row[5] = Fixed(pose.angle, 5);
  row[6] = Fixed(pose.scale, 4);
  row[7] = Fixed(outcome.result->score, 2);
  return row;
}

// Of UTF-8 text: every byte but the continuations begins a character.
std::size_t NumCharacters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

class TextReport : public FindReport {
 public:
  TextReport(const FindContext& context, Report& report)
      : report_(report), timeout_ms_(context.options.search.timeout_us / 1000.0) {
    for (const std::string& scene : context.scenes)
      scene_width_ = std::max(scene_width_, NumCharacters(scene));
    PrintRow({"scene", "status", "x", "y", "angle deg", "angle rad", "scale", "score", "time ms"});
  }

  void Add(const SceneOutcome& outcome) override {
    ++num_scenes_;
    if (outcome.IsFound()) ++num_found_;
    if (RanOutOfTime(outcome)) ++num_out_of_time_;
    PrintRow(RowOf(outcome));
  }

  void End() override {
    if (num_scenes_ > 1)
      report_.Print(fmt::format("\nfound in {} of {} scenes\n", num_found_, num_scenes_));
    if (num_out_of_time_ > 0)
      report_.Print(
          fmt::format("\nThe time of {:g} ms ran out in {} scene{}; a longer --timeout (up to "
                      "3.999s) or a narrower\n--scale may find the pattern there.\n",
                      timeout_ms_, num_out_of_time_, num_out_of_time_ > 1 ? "s" : ""));
  }

 private:
  bool RanOutOfTime(const SceneOutcome& outcome) const {
    return outcome.result && !outcome.result->IsFound() && outcome.result->time_ms >= timeout_ms_;
  }

  void PrintRow(const Row& cells) {
    report_.Print(fmt::format("{:{}}  {:18}  {:>8}  {:>8}  {:>9}  {:>9}  {:>7}  {:>6}  {:>8}\n",
                              cells[0], scene_width_, cells[1], cells[2], cells[3], cells[4],
                              cells[5], cells[6], cells[7], cells[8]));
  }

  Report& report_;
  double timeout_ms_;
  std::size_t scene_width_ = 5;
  int num_scenes_ = 0;
  int num_found_ = 0;
  int num_out_of_time_ = 0;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindTextReport(const FindContext& context, Report& report) {
  return std::make_unique<TextReport>(context, report);
}

}  // namespace orvandel::cli
