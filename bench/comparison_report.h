#pragma once

#include <string>
#include <vector>

#include "bench/comparison.h"

namespace orvandel::bench {

/// The outcomes as Markdown: a row a peer over all cases, then a row a suite with what each found.
std::string TablesOf(const std::vector<PeerOutcomes>& peers,
                     const std::vector<ComparedCase>& cases);

/// Draws what each peer found, and its errors, against its times, a dot a suite: compared-found.svg and
/// compared-error.svg in the folder, which is made where it is not there. Throws std::runtime_error.
void PlotComparison(const std::vector<PeerOutcomes>& peers, const std::vector<ComparedCase>& cases,
                    const std::string& folder);

}  // namespace orvandel::bench
