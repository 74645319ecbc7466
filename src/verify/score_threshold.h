#pragma once

namespace orvandel {

/// What a score must do to matter: beat the best so far, or reach the accept score.
struct ScoreThreshold {
  double best;
  double accept;

  /// False for a score that is not a number.
  bool IsMissedBy(double score) const { return score <= best && score < accept; }

  friend bool operator==(const ScoreThreshold&, const ScoreThreshold&) = default;
};

}  // namespace orvandel
