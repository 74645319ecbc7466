#include "shape/search/candidate_list.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/rounding.h"

namespace orvandel::shape {

/// Hits that have been kept, by place: cells of some positions' side, each with a list.
class KeptHits {
 public:
  KeptHits(CandidateList& list, const std::vector<TriedPose>& tried, std::int32_t width,
           std::int32_t height, bool turns_fully)
      : list_(list),
        tried_(tried),
        columns_(width / kSide + 1),
        rows_(height / kSide + 1),
        turns_fully_(turns_fully) {
    list.heads_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), kNone);
    list.kept_.clear();
  }

  /// Keeps the hit unless a kept one lies within two steps in every respect.
  bool Add(std::uint32_t index) {
    const auto& hit = list_.hits_[index];
    const std::int32_t column = hit.x / kSide;
    const std::int32_t row = hit.y / kSide;
    for (std::int32_t y = std::max(row - 1, 0); y <= std::min(row + 1, rows_ - 1); ++y) {
      for (std::int32_t x = std::max(column - 1, 0); x <= std::min(column + 1, columns_ - 1); ++x) {
        for (std::uint32_t i = Head(x, y); i != kNone; i = list_.kept_[i].next) {
          if (AreClose(hit, list_.hits_[list_.kept_[i].hit])) return false;
        }
      }
    }
    list_.kept_.push_back({index, Head(column, row)});
    Head(column, row) = static_cast<std::uint32_t>(list_.kept_.size() - 1);
    return true;
  }

 private:
  static constexpr std::uint32_t kNone = 0xffffffffu;
  static constexpr std::int32_t kSide = 2;
  static constexpr double kSteps = 2.1;  // two steps, whatever rounding says

  std::uint32_t& Head(std::int32_t x, std::int32_t y) {
    return list_.heads_[static_cast<std::size_t>(y * columns_ + x)];
  }

  bool AreClose(const GridHit& a, const GridHit& b) const {
    if (std::abs(a.x - b.x) > kSide || std::abs(a.y - b.y) > kSide) return false;
    const auto& pose_a = tried_[a.pose];
    const auto& pose_b = tried_[b.pose];
    if (std::abs(pose_a.scale - pose_b.scale) > kSteps * pose_a.scale_step) return false;
    double apart = std::abs(pose_a.angle - pose_b.angle);
    if (turns_fully_) apart = std::min(apart, kTwoPi - apart);
    return apart <= kSteps * std::max(pose_a.angle_step, pose_b.angle_step);
  }

  CandidateList& list_;
  const std::vector<TriedPose>& tried_;
  std::int32_t columns_;
  std::int32_t rows_;
  bool turns_fully_;
};

void CandidateList::Clear() {
  hits_.clear();
}

void CandidateList::DropBelow(float least) {
  hits_.erase(std::remove_if(hits_.begin(), hits_.end(),
                             [least](const GridHit& hit) { return hit.score < least; }),
              hits_.end());
}

float CandidateList::UpperHalfScore() {
  CountSteps();
  std::size_t num_above = 0;
  for (std::size_t step = kScoreSteps; step > 0; --step) {
    num_above += counts_[step];
    if (2 * num_above >= hits_.size())
      return static_cast<float>(step) / static_cast<float>(kScoreSteps);
  }
  return 0.0F;
}

std::size_t CandidateList::StepOf(const GridHit& hit) {
  const auto step = static_cast<std::size_t>(hit.score * static_cast<float>(kScoreSteps));
  return std::min(step, kScoreSteps);
}

void CandidateList::CountSteps() {
  counts_.assign(kScoreSteps + 1, 0);
  for (const GridHit& hit : hits_)
    ++counts_[StepOf(hit)];
}

/// Best first, by steps of a thousandth; equals stay in their order.
void CandidateList::SortByScore() {
  CountSteps();
  // Where those of each step begin.
  std::uint32_t begin = 0;
  for (std::size_t step = counts_.size(); step-- > 0;) {
    const std::uint32_t count = counts_[step];
    counts_[step] = begin;
    begin += count;
  }
  sorted_.resize(hits_.size());
  for (const GridHit& hit : hits_)
    sorted_[counts_[StepOf(hit)]++] = hit;
  hits_.swap(sorted_);
}

const std::vector<std::uint32_t>& CandidateList::ChooseBest(const std::vector<TriedPose>& tried,
                                                            std::int32_t width, std::int32_t height,
                                                            bool turns_fully, float least,
                                                            std::size_t most) {
  SortByScore();
  KeptHits kept(*this, tried, width, height, turns_fully);
  chosen_.clear();
  for (std::uint32_t i = 0; i < hits_.size() && chosen_.size() < most; ++i) {
    if (hits_[i].score >= least && kept.Add(i)) chosen_.push_back(i);
  }
  return chosen_;
}

}  // namespace orvandel::shape
