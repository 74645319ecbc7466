#pragma once

#include <string>
#include <vector>

#include "cli/pose.h"

namespace orvandel::cli {

/// Where a pattern truly lies, as manifests say it: (cx, cy) is the scene position of the pattern
/// picture's centre, with the centre of the top-left pixel at (0, 0).
struct TrueInstance {
  double cx = 0;
  double cy = 0;
  double angle_deg = 0;  ///< positive turns clockwise on the screen
  double scale = 1;
};

/// The same as a pose about the pattern picture's centre, with the centre of the top-left pixel at
/// (0.5, 0.5), as the library counts.
Pose PoseOf(const TrueInstance& instance, int pattern_width, int pattern_height);

/// One search of a suite.
struct TestCase {
  std::string name;
  std::string pattern;                  ///< path
  std::string scene;                    ///< path
  std::vector<TrueInstance> instances;  ///< none when the pattern is not in the scene
};

/// A folder of scenes with known poses.
struct Suite {
  std::string name;
  std::vector<TestCase> cases;
};

/// Reads a suite.
///
/// @param path  of the suite's folder, or of its manifest.csv.
/// The manifest is CSV with the columns case, pattern, scene, instance, cx, cy, angle_deg and
/// scale in any order, among others, and one row per instance; instance -1 says that there is none.
/// Pattern and scene are relative to its folder. Throws FileError, with the line, for anything
/// else.
Suite ReadSuite(const std::string& path);

}  // namespace orvandel::cli
