#pragma once

#include <memory>
#include <string>
#include <vector>

#include "evaluation/finder.h"

// Everything that `scripts/bench compare` lets look for the same patterns, on one thread: the two engines, and what
// OpenCV offers for the job.
namespace orvandel::bench {

/// All look for scales in this range, at any angle.
inline constexpr double kLeastScale = 0.5;
inline constexpr double kMostScale = 2.0;

struct Peer {
  std::string key;   ///< for the command line
  std::string name;  ///< for tables and plots
  std::unique_ptr<evaluation::Finder> finder;
};

std::unique_ptr<evaluation::Finder> MakeShapeFinder();
std::unique_ptr<evaluation::Finder> MakeSegmentFinder();

#ifdef ORVANDEL_BENCH_PEERS
/// SIFT features, matched to their nearest by the ratio of distances; RANSAC for a similarity.
std::unique_ptr<evaluation::Finder> MakeSiftFinder();
/// The same with ORB features.
std::unique_ptr<evaluation::Finder> MakeOrbFinder();
/// Normalised correlation with turned and scaled templates, coarse to fine.
std::unique_ptr<evaluation::Finder> MakeCorrelationFinder();
/// N. Guil's generalised Hough transform, in images made smaller.
std::unique_ptr<evaluation::Finder> MakeHoughFinder();
#endif

/// Those that this build has.
std::vector<Peer> AllPeers();

}  // namespace orvandel::bench
