#pragma once

#include <cstddef>
#include <cstdint>

/// What a target does with one input; the name is the fuzzer's. A target accepts every input,
/// and what it does depends on the input alone.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
