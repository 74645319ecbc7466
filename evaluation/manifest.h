#pragma once

#include <string>
#include <vector>

#include "base/geometry.h"
#include "evaluation/case_params.h"

namespace orvandel::evaluation {

/// One search of a suite.
struct TestCase {
  std::string name;
  std::string pattern;  ///< path
  std::string scene;    ///< path
  /// True poses: of pattern points measured from the pattern image's centre, with the centre of the
  /// scene's top-left pixel at (0, 0). None when the pattern is not in the scene.
  std::vector<Similarity> instances;
  CaseParams params = {};  ///< of the params.csv beside the manifest, where it has the case
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
/// Pattern and scene are relative to its folder, in which a params.csv may lie. Throws FileError,
/// with the line, for anything else.
Suite ReadSuite(const std::string& path);

}  // namespace orvandel::evaluation
