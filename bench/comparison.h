#pragma once

#include <string>
#include <vector>

#include "bench/compared_cases.h"
#include "bench/peers/peers.h"

namespace orvandel::bench {

/// What came of one case.
struct Outcome {
  std::size_t case_index = 0;
  bool is_right = false;  ///< the best match is accepted and at an instance
  bool is_wrong = false;  ///< it is accepted, and at none
  double corner_px = 0;   ///< mean error of the corners, where it is right
  double time_ms = 0;     ///< of the search
};

struct PeerOutcomes {
  std::string name;
  std::vector<Outcome> outcomes;    ///< of the cases that the time sufficed for
  std::vector<double> learning_ms;  ///< by pattern
};

/// Lets a peer look for everything, in an order by chance that is the same for all, for about so many seconds; shows how
/// far it is on standard error. A pattern that it cannot learn counts as not found in each of its scenes.
PeerOutcomes RunPeer(Peer& peer, const std::vector<ComparedCase>& cases, double limit_s);

}  // namespace orvandel::bench
