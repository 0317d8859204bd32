// What holds for every input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace quillmere::fuzz {

/// Ends the process, which is what a fuzzer takes for a finding.
#define QUILLMERE_REQUIRE(...)                                                            \
  do {                                                                                    \
    if (__VA_ARGS__) break;                                                               \
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #__VA_ARGS__); \
    std::abort();                                                                         \
  } while (false)

}  // namespace quillmere::fuzz
