#pragma once

#include <string>

#include "bench/ratio_table.h"
#include "bench/workload.h"

// What each file of this folder offers to the program: benchmarks of a stage by itself, and the
// rows in which it is compared with others, side by side. The workload outlives the benchmarks.
namespace orvandel::bench {

void RegisterSubCanny(const Workload& workload);
void RegisterEdgePoints(const Workload& workload);
void RegisterFindShapes(const Workload& workload);
void RegisterImageToSegments(const Workload& workload);
void RegisterTraining();
void RegisterSearch(const Workload& workload);
void RegisterCoarseSearch(const Workload& workload);

void CompareSubCanny(const Workload& workload, RatioTable& table);
void CompareEdgePoints(const Workload& workload, RatioTable& table);
void CompareImageToSegments(const Workload& workload, RatioTable& table);
void CompareTraining(RatioTable& table);
void CompareSearch(const Workload& workload, RatioTable& table);
void CompareCoarseSearch(const Workload& workload, RatioTable& table);
void CompareMemory(const Workload& workload, RatioTable& table);

/// Measures how cost grows with image size, number of contours and number of segments, on rendered
/// scenes, and draws a plot of each into a folder.
void PlotGrowth(const std::string& folder);

}  // namespace orvandel::bench
