#pragma once

#include <map>
#include <string>

#include "evaluation/pose_error.h"

namespace orvandel::evaluation {

/// What is known of a case beside its truth.
struct CaseParams {
  Symmetry symmetry;  ///< of the pattern; `symmetry=`, none where it is not told
  /// The scaled one in suites that tell symmetries, with `fit_max=`: the largest distance of a true
  /// corner from the manifest's pose.
  Tolerance tolerance;
  std::map<std::string, std::string> values;  ///< all that is told, by name
};

/// Reads the params.csv beside a suite's manifest: CSV with the columns case and params, a row per
/// case, where params is a list such as "symmetry=6;noise=1.2".
///
/// @param path  of the suite's folder.
/// @return  by case; nothing for a suite without the file. Throws FileError, with the line, for a
///          file that says something else.
std::map<std::string, CaseParams> ReadCaseParams(const std::string& path);

}  // namespace orvandel::evaluation
