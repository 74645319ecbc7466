#pragma once

#include <string>

namespace orvandel::test {

inline bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace orvandel::test
