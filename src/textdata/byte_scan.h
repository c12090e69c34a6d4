// Scanning a byte range for line ends and one of two byte values, many
// bytes at a time where the processor allows. The delimited readers spend most of
// their time here: finding line ends and counting delimiters.
#ifndef TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_
#define TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tolva::textdata {

// Bits set in a mask, without the popcnt instruction the baseline x86-64
// target lacks (the compiler would call a library routine instead).
inline unsigned CountBits(std::uint64_t v) noexcept {
  v = v - ((v >> 1) & 0x5555555555555555ull);
  v = (v & 0x3333333333333333ull) + ((v >> 2) & 0x3333333333333333ull);
  v = (v + (v >> 4)) & 0x0f0f0f0f0f0f0f0full;
  return static_cast<unsigned>((v * 0x0101010101010101ull) >> 56);
}

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

// Whether the processor has what the wide-vector scanners use (AVX2 with
// popcnt, bmi and carry-less multiplication); asked once.
bool WideVectorsAvailable() noexcept;

// Scans p[0, n) up to its first CR or LF. The size test of a delimited
// file learns all it needs of a plain row this way, reading each byte
// once; it uses the widest vectors the processor has. The findings are
// written in place: a returned copy would be read back whole right after
// its fields were stored one by one, which the processor handles slowly.
void ScanLine(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept;
// The same with sixteen-byte vectors only, for processors without wider
// ones (and for tests, so it is covered on every machine).
void ScanLineBaseline(const char* p, std::size_t n, char a, char b, LineScan& scan) noexcept;

// Bit masks of the 64 bytes from `p`: bit i of `hits` is set when p[i] is
// `a` or `b`, of `quotes` when it is a double quote. Bytes at or past
// `text_end` are not read (their bits stay clear).
inline void WindowMasks(const char* p, const char* text_end, char a, char b, std::uint64_t& hits,
                        std::uint64_t& quotes) noexcept {
  hits = quotes = 0;
#if defined(__SSE2__)
  if (text_end - p >= 64) {
    const __m128i va = _mm_set1_epi8(a), vb = _mm_set1_epi8(b), vq = _mm_set1_epi8('"');
    for (int k = 0; k < 4; ++k) {
      const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * k));
      const auto h = static_cast<std::uint64_t>(
          static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(chunk, va), _mm_cmpeq_epi8(chunk, vb)))));
      const auto q = static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, vq))));
      hits |= h << (16 * k);
      quotes |= q << (16 * k);
    }
    return;
  }
#endif
  const std::ptrdiff_t n = text_end - p < 64 ? text_end - p : 64;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    hits |= static_cast<std::uint64_t>(p[i] == a || p[i] == b) << i;
    quotes |= static_cast<std::uint64_t>(p[i] == '"') << i;
  }
}

// Positions of two kinds of byte in a line, as bit masks of 64 bytes at a
// time: `a` or `b` (a one-byte delimiter in either case) and the double
// quote. Counting the fields of a quoted row walks from one position to the
// next with these instead of searching again for every field. Bytes past
// the line but inside the text may be read and show up as positions at or
// past its end; nothing past the end of the text is read.
class LineMasks {
 public:
  LineMasks(std::string_view line, const char* text_end, char a, char b) noexcept
      : line_(line), text_end_(text_end), a_(a), b_(b) {}

  // The first position at or after `from` of a delimiter byte, or of a
  // quote; some position at or past the line's end when there is none.
  std::size_t NextDelimiter(std::size_t from) noexcept { return Next(from, false); }
  std::size_t NextQuote(std::size_t from) noexcept { return Next(from, true); }

 private:
  std::size_t Next(std::size_t from, bool quote) noexcept {
    while (from < line_.size()) {
      const std::size_t window = from & ~std::size_t{63};
      if (window != window_) Load(window);
      const std::uint64_t bits = (quote ? quotes_ : delimiters_) >> (from - window);
      if (bits != 0) return from + static_cast<std::size_t>(__builtin_ctzll(bits));
      from = window + 64;
    }
    return line_.size();
  }

  void Load(std::size_t window) noexcept {
    window_ = window;
    WindowMasks(line_.data() + window, text_end_, a_, b_, delimiters_, quotes_);
  }

  std::string_view line_;
  const char* text_end_;
  char a_, b_;
  std::size_t window_ = ~std::size_t{0};
  std::uint64_t delimiters_ = 0, quotes_ = 0;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_BYTE_SCAN_H_
