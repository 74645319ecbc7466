#pragma once

#include <cstdint>

namespace orvandel::cli {

/// What looks for patterns.
enum class Engine : std::uint8_t {
  kShapes,    ///< any shape, all edges
  kSegments,  ///< pairs of straight edges
};

/// As --engine spells it.
inline const char* EngineWord(Engine engine) {
  return engine == Engine::kShapes ? "shapes" : "segments";
}

}  // namespace orvandel::cli
