#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shape/search/pose_scan.h"

namespace orvandel::shape {

/// A rotation and a scale that were tried, with the steps to the next ones.
struct TriedPose {
  double angle = 0.0;
  double scale = 0.0;
  double angle_step = 0.0;
  double scale_step = 0.0;
  std::size_t points = 0;  ///< number of the coarse points that it is tried with
};

/// The hits of an exhaustive search, and the choice of the best ones.
class CandidateList {
 public:
  void Clear();
  std::size_t Size() const { return hits_.size(); }

  /// Where hits are appended.
  std::vector<GridHit>& Hits() { return hits_; }

  void DropBelow(float least);
  /// A score that half of the hits, or a few more, reach: by steps of a thousandth.
  float UpperHalfScore();

  /// Indices into `Hits()` of the best hits, best first, none within two positions and two steps of angle and scale of a
  /// better one.
  ///
  /// @param tried  by the poses' numbers
  const std::vector<std::uint32_t>& ChooseBest(const std::vector<TriedPose>& tried,
                                               std::int32_t width, std::int32_t height,
                                               bool turns_fully, float least, std::size_t most);

 private:
  struct Kept {
    std::uint32_t hit = 0;
    std::uint32_t next = 0;
  };
  static constexpr std::size_t kScoreSteps = 1024;
  static std::size_t StepOf(const GridHit& hit);
  void CountSteps();
  void SortByScore();

  std::vector<GridHit> hits_;
  std::vector<GridHit> sorted_;
  std::vector<std::uint32_t> counts_;
  std::vector<std::uint32_t> heads_;
  std::vector<Kept> kept_;
  std::vector<std::uint32_t> chosen_;

  friend class KeptHits;
};

}  // namespace orvandel::shape
