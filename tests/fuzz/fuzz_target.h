// libFuzzer's entry point (replay_main.cc calls it too) and the check that aborts, keeping the input.
#ifndef TOLVA_TESTS_FUZZ_FUZZ_TARGET_H_
#define TOLVA_TESTS_FUZZ_FUZZ_TARGET_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "fuzz: invariant broken: %s\n", what);
    std::abort();
  }
}

#endif  // TOLVA_TESTS_FUZZ_FUZZ_TARGET_H_
