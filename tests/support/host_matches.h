#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

#include "orvandel/orvandel.h"

namespace orvandel::test {

/// The matches of a finder's last search, as a host reads them; none where there is no result.
inline std::vector<orv_match> HostMatchesOf(const orv_finder* finder) {
  orv_result result = {};
  result.struct_size = sizeof result;
  if (orv_finder_get_result(finder, &result) != ORV_OK) return {};
  std::vector<orv_match> matches(result.num_matches);
  for (std::size_t i = 0; i < matches.size(); ++i) {
    matches[i].struct_size = sizeof matches[i];
    if (orv_finder_get_match(finder, i, &matches[i]) != ORV_OK) return {};
  }
  return matches;
}

/// Bit for bit.
inline bool AreSameMatches(const std::vector<orv_match>& a, const std::vector<orv_match>& b) {
  if (a.size() != b.size()) return false;
  constexpr std::size_t kEnd = offsetof(orv_match, is_reversed) + sizeof(orv_match::is_reversed);
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::memcmp(&a[i], &b[i], kEnd) != 0) return false;  // what lies behind is padding
  }
  return true;
}

}  // namespace orvandel::test
