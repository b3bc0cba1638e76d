// SPDX-License-Identifier: MIT
#pragma once

/// For loops over many numbers that the compiler takes several of at once.
///
///     DISCOPLAN_WIDE_LOOPS void Scale(std::span<float> values, float by) {
///       for (float& value : values) value *= by;
///     }
///
/// Such a function is compiled once more for processors with AVX2, and which of both runs is chosen
/// as the program starts. Results are the same to the bit: each number takes the same steps.

#include <cstdlib>  // which tells the C library

// The choice is glibc's, before sanitizers are ready to look at it.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define DISCOPLAN_WIDE_LOOPS __attribute__((target_clones("avx2", "default")))
#else
#define DISCOPLAN_WIDE_LOOPS
#endif
