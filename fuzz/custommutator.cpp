// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// For the targets whose input is a graph: makes the fuzzer change whole commands most of the time,
// and single bytes, as it does for other targets, otherwise.
#include "fuzz/graphmutator.h"

#include <algorithm>
#include <cstdint>

// Called by the fuzzer, and offered by it: the change of single bytes.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned seed);
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    // The dictionary, and pieces of other inputs, come with single bytes only.
    constexpr unsigned kSingleBytes = 3;
    if (seed % kSingleBytes == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::string mutated =
        fuzz::MutateGraph({reinterpret_cast<const char*>(data), size}, seed, maxSize);
    std::copy(mutated.begin(), mutated.end(), data);
    return mutated.size();
}
