// The fuzz targets' assertion: a broken invariant aborts, so libFuzzer keeps
// the input that broke it.
#ifndef TOLVA_TESTS_FUZZ_FUZZ_CHECK_H_
#define TOLVA_TESTS_FUZZ_FUZZ_CHECK_H_

#include <cstdio>
#include <cstdlib>

inline void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "fuzz: invariant broken: %s\n", what);
    std::abort();
  }
}

#endif  // TOLVA_TESTS_FUZZ_FUZZ_CHECK_H_
