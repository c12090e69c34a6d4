// Scanning a byte range for line ends and one of two byte values, many
// bytes at a time where the processor allows. The delimited readers spend most of
// their time here: finding line ends and counting delimiters.
#ifndef TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_
#define TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_

#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tolva::textdata {

// Index of the first byte in p[0, n) equal to `a` or `b`; n when none.
inline std::size_t FindEither(const char* p, std::size_t n, char a, char b) noexcept {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i va = _mm_set1_epi8(a);
  const __m128i vb = _mm_set1_epi8(b);
  for (; i + 16 <= n; i += 16) {
    const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
    const int mask = _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(chunk, va), _mm_cmpeq_epi8(chunk, vb)));
    if (mask != 0) return i + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(mask)));
  }
#endif
  for (; i < n; ++i)
    if (p[i] == a || p[i] == b) return i;
  return n;
}

// What one pass to the end of a line finds on the way.
struct LineScan {
  std::size_t length;   // bytes before the first CR or LF; all of them when none
  std::size_t matches;  // bytes among those equal to `a` or `b`
  bool quote;           // whether a double quote is among them
};

// Scans p[0, n) up to its first CR or LF. The size test of a delimited
// file learns all it needs of a plain row this way, reading each byte
// once; it uses the widest vectors the processor has. The findings are
// written in place: a returned copy would be read back whole right after
// its fields were stored one by one, which the processor handles slowly.
void ScanLine(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept;
// The same with sixteen-byte vectors only, for processors without wider
// ones (and for tests, so it is covered on every machine).
void ScanLineBaseline(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept;

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_
