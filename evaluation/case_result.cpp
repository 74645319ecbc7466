#include "evaluation/case_result.h"

namespace orvandel::evaluation {

CaseResult Judge(const std::string& suite, const TestCase& test_case, const Finding& finding,
                 const PatternFrame& frame) {
  CaseResult judged = Unusable(suite, test_case);
  judged.finding = finding;
  if (finding.matches.empty()) return judged;
  const Similarity& found = finding.matches.front().scene_from_pattern;
  for (const Similarity& truth : test_case.instances) {
    const PoseError error = ErrorOf(found, truth, frame);
    if (!judged.error || error.corner_px < judged.error->corner_px) judged.error = error;
  }
  judged.is_found = judged.error && judged.error->corner_px < CornerTolerancePx(frame);
  return judged;
}

CaseResult Unusable(const std::string& suite, const TestCase& test_case) {
  CaseResult result;
  result.suite = suite;
  result.name = test_case.name;
  result.is_present = !test_case.instances.empty();
  return result;
}

}  // namespace orvandel::evaluation
