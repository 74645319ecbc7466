#include "cli/find_result.h"

namespace orvandel::cli {

const char* StatusWord(FindStatus status) {
  switch (status) {
    case FindStatus::kFound:
      return "found";
    case FindStatus::kTimedOut:
      return "timed_out";
    case FindStatus::kNotFound:
      return "not_found";
    case FindStatus::kBelowAcceptScore:
      return "below_accept_score";
    case FindStatus::kNoContours:
      return "no_contours";
    case FindStatus::kNoLines:
      return "no_lines";
  }
  return "unknown";
}

}  // namespace orvandel::cli
