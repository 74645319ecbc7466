#include "evaluation/case_result.h"

#include <algorithm>
#include <iterator>

#include "evaluation/instance_matching.h"
#include "evaluation/pose_deviation.h"

namespace orvandel::evaluation {
namespace {

void JudgeBest(const TestCase& test_case, const Match& best, const PatternFrame& frame,
               CaseResult& judged) {
  const Similarity* nearest = nullptr;
  for (const Similarity& truth : test_case.instances) {
    const PoseError error =
        ErrorOf(best.scene_from_pattern, truth, frame, test_case.params.symmetry);
    if (judged.error && error.corner_px >= judged.error->corner_px) continue;
    judged.error = error;
    nearest = &truth;
  }
  if (nearest == nullptr) return;
  judged.is_found = judged.error->corner_px < test_case.params.tolerance.Px(frame, nearest->scale);
  if (!judged.is_found || !best.is_accepted || !best.covariance) return;
  const PoseDeviation deviation =
      DeviationOf(best.scene_from_pattern, *best.covariance, *nearest, frame, judged.symmetry);
  judged.num_free = deviation.num_free;
  judged.squared_deviation = deviation.squared;
}

void JudgeInstances(const TestCase& test_case, const std::vector<Match>& matches,
                    const PatternFrame& frame, CaseResult& judged) {
  std::vector<Match> accepted;
  std::copy_if(matches.begin(), matches.end(), std::back_inserter(accepted),
               [](const Match& match) { return match.is_accepted; });
  for (const auto& matched : MatchInstances(accepted, test_case.instances, frame, judged.symmetry,
                                            test_case.params.tolerance)) {
    if (matched)
      judged.instance_errors.push_back(matched->error);
    else
      ++judged.num_false;
  }
}

}  // namespace

CaseResult Judge(const std::string& suite, const TestCase& test_case, const Finding& finding,
                 const PatternFrame& frame) {
  CaseResult judged = Unusable(suite, test_case);
  judged.finding = finding;
  if (finding.matches.empty()) return judged;
  JudgeBest(test_case, finding.matches.front(), frame, judged);
  JudgeInstances(test_case, finding.matches, frame, judged);
  return judged;
}

CaseResult Unusable(const std::string& suite, const TestCase& test_case) {
  CaseResult result;
  result.suite = suite;
  result.name = test_case.name;
  result.is_present = !test_case.instances.empty();
  result.symmetry = test_case.params.symmetry;
  result.num_instances = static_cast<int>(test_case.instances.size());
  return result;
}

}  // namespace orvandel::evaluation
