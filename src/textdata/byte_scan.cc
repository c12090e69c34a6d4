#include "textdata/byte_scan.h"

#if defined(__x86_64__)
#include <immintrin.h>
#define TOLVA_SCAN_AVX2 1
#endif

namespace tolva::textdata {

namespace {

constexpr char kCR = '\r';
constexpr char kLF = '\n';
constexpr char kQuote = '"';

// The bytes past the last whole block, one at a time. Counts are kept in
// locals throughout: the text is bytes, which may alias any field of the
// caller's LineScan, so updating it inside a loop would go through memory.
void ScanTail(const char* p, std::size_t i, std::size_t n, char a, char b, std::size_t matches, bool quote,
              LineScan& scan) noexcept {
  for (; i < n; ++i) {
    const char c = p[i];
    if (c == kCR || c == kLF) break;
    matches += (c == a || c == b) ? 1 : 0;
    quote = quote || c == kQuote;
  }
  scan = LineScan{i, matches, quote};
}

}  // namespace

void ScanLineBaseline(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept {
  std::size_t matches = 0;
  bool quote = false;
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i cr = _mm_set1_epi8(kCR), lf = _mm_set1_epi8(kLF), vquote = _mm_set1_epi8(kQuote);
  const __m128i va = _mm_set1_epi8(a), vb = _mm_set1_epi8(b);
  // Matches of whole blocks are summed in sixteen byte-wide counters,
  // folded into the total before any of them could overflow.
  __m128i counters = _mm_setzero_si128();
  int blocks = 0;
  const auto fold = [&] {
    const __m128i sums = _mm_sad_epu8(counters, _mm_setzero_si128());
    matches += static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
               static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_unpackhi_epi64(sums, sums)));
    counters = _mm_setzero_si128();
    blocks = 0;
  };
  for (; i + 16 <= n; i += 16) {
    const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
    const __m128i hits = _mm_or_si128(_mm_cmpeq_epi8(chunk, va), _mm_cmpeq_epi8(chunk, vb));
    const unsigned ends =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(chunk, cr), _mm_cmpeq_epi8(chunk, lf))));
    const unsigned quotes = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, vquote)));
    if (ends != 0) {
      const unsigned before = (ends & (0u - ends)) - 1;  // bits below the first line end
      fold();
      matches += static_cast<std::size_t>(CountBits(static_cast<unsigned>(_mm_movemask_epi8(hits)) & before));
      quote = quote || (quotes & before) != 0;
      scan = LineScan{i + static_cast<std::size_t>(__builtin_ctz(ends)), matches, quote};
      return;
    }
    quote = quote || quotes != 0;
    counters = _mm_sub_epi8(counters, hits);  // a hit is -1 in its byte
    if (++blocks == 255) fold();
  }
  fold();
#endif
  ScanTail(p, i, n, a, b, matches, quote, scan);
}

namespace {

#if defined(TOLVA_SCAN_AVX2)
__attribute__((target("avx2,popcnt,bmi"))) void ScanLineAvx2(const char* p, std::size_t n, char a, char b,
                                                             LineScan& scan) noexcept {
  std::size_t matches = 0;
  unsigned quotes_seen = 0;
  std::size_t i = 0;
  const __m256i cr = _mm256_set1_epi8(kCR), lf = _mm256_set1_epi8(kLF), vquote = _mm256_set1_epi8(kQuote);
  const __m256i va = _mm256_set1_epi8(a), vb = _mm256_set1_epi8(b);
  for (; i + 32 <= n; i += 32) {
    const __m256i chunk = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
    const unsigned hits = static_cast<unsigned>(
        _mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi8(chunk, va), _mm256_cmpeq_epi8(chunk, vb))));
    const unsigned ends = static_cast<unsigned>(
        _mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi8(chunk, cr), _mm256_cmpeq_epi8(chunk, lf))));
    const unsigned quotes = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(chunk, vquote)));
    if (ends != 0) {
      const unsigned before = (ends & (0u - ends)) - 1;
      matches += static_cast<std::size_t>(__builtin_popcount(hits & before));
      quotes_seen |= quotes & before;
      scan = LineScan{i + static_cast<std::size_t>(__builtin_ctz(ends)), matches, quotes_seen != 0};
      return;
    }
    matches += static_cast<std::size_t>(__builtin_popcount(hits));
    quotes_seen |= quotes;
  }
  ScanTail(p, i, n, a, b, matches, quotes_seen != 0, scan);
}
#endif

}  // namespace

bool WideVectorsAvailable() noexcept {
#if defined(TOLVA_SCAN_AVX2)
  static const bool available = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("pclmul");
  }();
  return available;
#else
  return false;
#endif
}

void ScanLine(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept {
#if defined(TOLVA_SCAN_AVX2)
  static const auto chosen = WideVectorsAvailable() ? ScanLineAvx2 : ScanLineBaseline;
  chosen(p, n, a, b, scan);
#else
  ScanLineBaseline(p, n, a, b, scan);
#endif
}

}  // namespace tolva::textdata
