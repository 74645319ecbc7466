#pragma once

#include <stdexcept>
#include <string>

namespace orvandel::evaluation {

/// A file cannot be used; what() is one line, "path: reason".
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& path, const std::string& reason)
      : std::runtime_error(path + ": " + reason) {}
};

}  // namespace orvandel::evaluation
