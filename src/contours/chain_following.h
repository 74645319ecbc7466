#pragma once

#include <cstdint>
#include <vector>

#include "platform/grey_rows.h"

namespace orvandel {

/// A pixel of an image below 65536 pixels each way.
struct ChainPixel {
  std::uint16_t column;
  std::uint16_t row;
};

/// Takes chains of 8-connected pixels off an edge map.
class ChainFollower {
 public:
  /// @param edge_map  outlives the follower; any value but 0 is an edge pixel.
  explicit ChainFollower(const GreyRows& edge_map);

  /// Steps from pixel to neighbour until there is none; clears each pixel that it steps onto and appends
  /// it. The pixel that it starts from stays as it is.
  void FollowFrom(ChainPixel pixel, std::vector<ChainPixel>& taken);

 private:
  unsigned Neighbours(ChainPixel pixel) const;
  unsigned NeighboursAtBorder(ChainPixel pixel) const;
  bool IsSet(int column, int row) const;

  std::uint8_t* const* rows_;
  int width_;
  int height_;
};

}  // namespace orvandel
