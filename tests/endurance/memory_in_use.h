#pragma once

#include <cstdint>
#include <optional>

namespace orvandel::test {

/// Bytes that this process has from its heap; nothing where the C library does not tell.
std::optional<std::uint64_t> HeapInUse();

/// Bytes of this process's memory that are resident; nothing where the system does not tell.
std::optional<std::uint64_t> ResidentMemory();

}  // namespace orvandel::test
