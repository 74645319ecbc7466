#include <fmt/format.h>

#include "cli/find_report.h"
#include "evaluation/csv.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::CsvField;
using evaluation::Degrees;
using evaluation::Fixed;

namespace {

class CsvReport : public FindReport {
 public:
  explicit CsvReport(Report& report) : report_(report) {
    report_.Print("scene,status,found,x,y,angle_deg,angle_rad,scale,score,time_ms\n");
  }

  void Add(const SceneOutcome& outcome) override {
    report_.Print(fmt::format("{},{},{},{},{}\n", CsvField(outcome.scene), outcome.Status(),
                              outcome.IsFound() ? 1 : 0, PoseFields(outcome), TimeField(outcome)));
  }

  void End() override {}

 private:
  static std::string PoseFields(const SceneOutcome& outcome) {
    if (!outcome.result || !outcome.result->HasPose()) return ",,,,,";
    const Similarity& pose = outcome.result->scene_from_pattern;
    return fmt::format("{},{},{},{},{},{}", Fixed(pose.x, 4, ""), Fixed(pose.y, 4, ""),
                       Fixed(Degrees(pose.angle), 5, ""), Fixed(pose.angle, 7, ""),
                       Fixed(pose.scale, 6, ""), Fixed(outcome.result->score, 3, ""));
  }

  static std::string TimeField(const SceneOutcome& outcome) {
    return outcome.result ? Fixed(outcome.result->time_ms, 3) : "";
  }

  Report& report_;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindCsvReport(Report& report) {
  return std::make_unique<CsvReport>(report);
}

}  // namespace orvandel::cli
