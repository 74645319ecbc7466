#pragma once

#include <string>
#include <utility>
#include <vector>

#include "evaluation/case_result.h"

namespace orvandel::evaluation::test {

// A pattern of 80 x 60 pixels: its diagonal is 100, and each corner lies 50 from the centre.

inline constexpr PatternFrame kFrame = {80, 60, {39.5, 29.5}};
inline constexpr Similarity kInstance = {200, 150, 0.5, 1};

inline Finding FindingAt(const Similarity& pose, double score = 95) {
  Finding finding;
  finding.status = score >= 80 ? "found" : "below_accept_score";
  finding.matches = {{pose, score, score >= 80}};
  finding.time_ms = 7;
  return finding;
}

inline Similarity Shifted(Similarity pose, double dx) {
  pose.x += dx;
  return pose;
}

inline TestCase CaseWith(std::vector<Similarity> instances) {
  return {"case", "pattern.png", "scene.png", std::move(instances)};
}

/// Of a search whose pose is `dx` pixels off.
inline CaseResult JudgeShift(double dx, double score = 95) {
  return Judge("suite", CaseWith({kInstance}), FindingAt(Shifted(kInstance, dx), score), kFrame);
}

}  // namespace orvandel::evaluation::test
