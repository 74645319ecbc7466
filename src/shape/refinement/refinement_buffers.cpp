#include "shape/refinement/refinement_buffers.h"

namespace orvandel::shape {

void RefinementWorkspace::Buffers::Resize(const Strip& strip) {
  const auto size = static_cast<std::size_t>(strip.Size());
  for (std::vector<float>& column : columns)
    column.resize(size);
  columns[kOne].assign(size, 1.0F);
  inside.resize(size);
  weights.resize(size);
  residuals.resize(size);
  sums.resize(strip.stretches.size());
  num_pixels.resize(strip.stretches.size());
  fits.resize(strip.stretches.size());
  lights.resize(strip.stretches.size());
}

void RefinementWorkspace::Buffers::ResizeForCovariance(const Strip& strip) {
  const auto size = static_cast<std::size_t>(strip.Size());
  for (std::vector<float>& values : influence)
    values.resize(size);
  strength.resize(size);
  pulls.resize(strip.stretches.size());
}

std::array<float*, kNumColumns> RefinementWorkspace::Buffers::ColumnPointers() {
  std::array<float*, kNumColumns> pointers = {};
  for (std::size_t i = 0; i < columns.size(); ++i)
    pointers[i] = columns[i].data();
  return pointers;
}

RefinementWorkspace::RefinementWorkspace() : buffers_(std::make_unique<Buffers>()) {}
RefinementWorkspace::~RefinementWorkspace() = default;
RefinementWorkspace::RefinementWorkspace(RefinementWorkspace&&) noexcept = default;
RefinementWorkspace& RefinementWorkspace::operator=(RefinementWorkspace&&) noexcept = default;

}  // namespace orvandel::shape
