#include "textdata/quoted_row_count.h"

#include "textdata/byte_scan.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tolva::textdata {

namespace {

inline std::uint64_t Ones(std::size_t n) noexcept {
  return n >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << n) - 1;
}

// For every bit, the parity of the bits at and below it.
inline std::uint64_t PrefixXor(std::uint64_t x) noexcept {
  x ^= x << 1;
  x ^= x << 2;
  x ^= x << 4;
  x ^= x << 8;
  x ^= x << 16;
  x ^= x << 32;
  return x;
}

// The count itself, for a mask source: the 64-byte masks and the prefix
// parity come from `Bits`, so the same logic runs with 16-byte vectors on
// any processor and with 32-byte ones and carry-less multiplication where
// the processor has them.
template <class Bits>
__attribute__((always_inline)) inline std::int64_t CountWith(std::string_view line, const char* text_end, char a,
                                                             char b) noexcept {
  const std::size_t n = line.size();
  if (n == 0) return 0;
  std::uint64_t delimiters = 0, quotes = 0;
  Bits::Masks(line.data(), text_end, a, b, delimiters, quotes);
  std::uint64_t odd_before_window = 0;  // all ones when an odd number of quotes came before
  std::uint64_t after_delimiter = 1;    // the line's start counts as just after a delimiter
  std::uint64_t after_closing = 0;
  std::int64_t separators = 0;
  bool last_is_separator = false;
  for (std::size_t window = 0; window < n; window += 64) {
    const std::size_t left = n - window;
    const std::uint64_t in_line = Ones(left);
    const std::uint64_t d = delimiters & in_line;
    const std::uint64_t q = quotes & in_line;
    std::uint64_t next_d = 0, next_q = 0;
    if (left > 64) Bits::Masks(line.data() + window + 64, text_end, a, b, next_d, next_q);
    const std::uint64_t odd_through = Bits::PrefixXor(q) ^ odd_before_window;
    const std::uint64_t odd_before = odd_through ^ q;
    const std::uint64_t opening = q & ~odd_before;
    const std::uint64_t closing = q & odd_before;
    // An opening quote follows a delimiter, or the closing quote of a doubled pair.
    if (opening & ~(((d << 1) | after_delimiter) | ((closing << 1) | after_closing))) return -1;
    // A closing quote comes before a delimiter, the other quote of a doubled pair, or the line's end.
    const std::uint64_t line_end = left <= 64 ? std::uint64_t{1} << (left - 1) : 0;
    const std::uint64_t followed_ok = (d >> 1) | (q >> 1) | ((next_d | next_q) << 63) | line_end;
    if (closing & ~followed_ok) return -1;
    const std::uint64_t separating = d & ~odd_before;
    separators += Bits::Count(separating);
    if (left <= 64) last_is_separator = (separating & line_end) != 0;
    odd_before_window = (odd_through >> 63) ? ~std::uint64_t{0} : 0;
    after_delimiter = d >> 63;
    after_closing = closing >> 63;
    delimiters = next_d;
    quotes = next_q;
  }
  if (odd_before_window) return -1;  // a quoted field runs on past the line
  // A delimiter at the very end of a quoted row starts no further field.
  return separators + 1 - (last_is_separator ? 1 : 0);
}

struct BaselineBits {
  static void Masks(const char* p, const char* end, char a, char b, std::uint64_t& d, std::uint64_t& q) noexcept {
    WindowMasks(p, end, a, b, d, q);
  }
  static std::uint64_t PrefixXor(std::uint64_t x) noexcept { return textdata::PrefixXor(x); }
  static std::int64_t Count(std::uint64_t x) noexcept { return static_cast<std::int64_t>(CountBits(x)); }
};

#if defined(__x86_64__)
#define TOLVA_AVX2_TARGET __attribute__((target("avx2,pclmul,popcnt")))
struct Avx2Bits {
  TOLVA_AVX2_TARGET static void Masks(const char* p, const char* end, char a, char b, std::uint64_t& d,
                                      std::uint64_t& q) noexcept {
    if (end - p < 64) return WindowMasks(p, end, a, b, d, q);
    const __m256i va = _mm256_set1_epi8(a), vb = _mm256_set1_epi8(b), vq = _mm256_set1_epi8('"');
    const __m256i lo = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    const __m256i hi = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
    const auto d_lo = static_cast<std::uint32_t>(
        _mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi8(lo, va), _mm256_cmpeq_epi8(lo, vb))));
    const auto d_hi = static_cast<std::uint32_t>(
        _mm256_movemask_epi8(_mm256_or_si256(_mm256_cmpeq_epi8(hi, va), _mm256_cmpeq_epi8(hi, vb))));
    const auto q_lo = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(lo, vq)));
    const auto q_hi = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(hi, vq)));
    d = d_lo | static_cast<std::uint64_t>(d_hi) << 32;
    q = q_lo | static_cast<std::uint64_t>(q_hi) << 32;
  }
  // Carry-less multiplication by all ones: each bit becomes the parity of
  // itself and every bit below it.
  TOLVA_AVX2_TARGET static std::uint64_t PrefixXor(std::uint64_t x) noexcept {
    const __m128i product =
        _mm_clmulepi64_si128(_mm_set_epi64x(0, static_cast<long long>(x)), _mm_set1_epi8(static_cast<char>(0xff)), 0);
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(product));
  }
  TOLVA_AVX2_TARGET static std::int64_t Count(std::uint64_t x) noexcept { return __builtin_popcountll(x); }
};

// Flattened: the mask source's vector code is inlined into this copy of the count.
TOLVA_AVX2_TARGET __attribute__((flatten)) std::int64_t CountAvx2(std::string_view line, const char* text_end, char a,
                                                                  char b) noexcept {
  return CountWith<Avx2Bits>(line, text_end, a, b);
}
#endif

}  // namespace

std::int64_t CountWellQuotedRowBaseline(std::string_view line, const char* text_end, char a, char b) noexcept {
  return CountWith<BaselineBits>(line, text_end, a, b);
}

std::int64_t CountWellQuotedRow(std::string_view line, const char* text_end, char a, char b) noexcept {
#if defined(__x86_64__)
  static const auto chosen = WideVectorsAvailable() ? CountAvx2 : CountWellQuotedRowBaseline;
  return chosen(line, text_end, a, b);
#else
  return CountWellQuotedRowBaseline(line, text_end, a, b);
#endif
}

}  // namespace tolva::textdata
