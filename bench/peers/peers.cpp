#include "bench/peers/peers.h"

namespace orvandel::bench {

std::vector<Peer> AllPeers() {
  std::vector<Peer> peers;
  peers.push_back({"shape", "Orvandel, shape engine", MakeShapeFinder()});
  peers.push_back({"segments", "Orvandel, segment engine", MakeSegmentFinder()});
#ifdef ORVANDEL_BENCH_PEERS
  peers.push_back({"sift", "SIFT and RANSAC", MakeSiftFinder()});
  peers.push_back({"orb", "ORB and RANSAC", MakeOrbFinder()});
  peers.push_back({"correlation", "correlation", MakeCorrelationFinder()});
  peers.push_back({"hough", "generalised Hough", MakeHoughFinder()});
#endif
  return peers;
}

}  // namespace orvandel::bench
