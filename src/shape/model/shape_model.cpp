#include "shape/model/shape_model.h"

#include <algorithm>
#include <cmath>

namespace orvandel::shape {

EdgePoints ToArrays(const std::vector<EdgePoint>& points) {
  EdgePoints arrays;
  arrays.size = points.size();
  const std::size_t padded =
      (points.size() + EdgePoints::kBlock - 1) / EdgePoints::kBlock * EdgePoints::kBlock;
  for (auto* const values :
       {&arrays.x, &arrays.y, &arrays.normal_x, &arrays.normal_y, &arrays.strength})
    values->reserve(padded);
  for (std::size_t i = 0; i < padded; ++i) {
    const EdgePoint& point = points[std::min(i, points.size() - 1)];
    arrays.x.push_back(static_cast<float>(point.at.x));
    arrays.y.push_back(static_cast<float>(point.at.y));
    arrays.normal_x.push_back(static_cast<float>(point.normal.x));
    arrays.normal_y.push_back(static_cast<float>(point.normal.y));
    arrays.strength.push_back(static_cast<float>(point.strength));
  }
  return arrays;
}

ImageView PatternImage::View() const {
  if (const auto* const bytes = std::get_if<std::vector<std::uint8_t>>(&pixels))
    return ImageView8{bytes->data(), width, height, static_cast<std::ptrdiff_t>(width)};
  const auto& words = std::get<std::vector<std::uint16_t>>(pixels);
  return ImageView16{
      words.data(), width, height,
      static_cast<std::ptrdiff_t>(width) * static_cast<std::ptrdiff_t>(sizeof(std::uint16_t))};
}

const ModelLevel& ShapeModel::LevelOf(double factor) const {
  // Nearest by ratio: compare factor^2 with the product of neighbours.
  std::size_t k = 0;
  while (k + 1 < levels.size() && factor * factor > levels[k].factor * levels[k + 1].factor)
    ++k;
  return levels[k];
}

double ShapeModel::ChanceOf(double min_scale, double max_scale) const {
  if (chances.empty()) return 0.0;
  const auto at = [this](double scale) {
    if (scale <= chances.front().scale) return chances.front().score;
    for (std::size_t i = 1; i < chances.size(); ++i) {
      if (scale > chances[i].scale) continue;
      const double share =
          (scale - chances[i - 1].scale) / (chances[i].scale - chances[i - 1].scale);
      return chances[i - 1].score + share * (chances[i].score - chances[i - 1].score);
    }
    return chances.back().score;
  };
  double highest = at(min_scale);
  for (const ChanceLevel& chance : chances) {
    if (chance.scale > min_scale && chance.scale < max_scale)
      highest = std::max(highest, chance.score);
  }
  return highest;
}

}  // namespace orvandel::shape
