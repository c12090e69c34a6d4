#include "util/character_counter.h"

#include <array>

namespace tolva::util {

namespace {

unsigned char Upper(unsigned char c) {
  return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 32) : c;
}

}  // namespace

std::int64_t CountCharacters(const std::string& input, const std::string& characters, bool ignore_case,
                             bool repeat_as_one) noexcept {
  if (input.empty() || characters.empty()) return 0;
  // weight[c]: how many times c is listed. Scanning the whole input once per
  // listed character and adding the results is the same as adding every
  // listed copy at each matching position, which one pass can do.
  std::array<std::int64_t, 256> weight{};
  for (char ch : characters) {
    unsigned char c = static_cast<unsigned char>(ch);
    ++weight[ignore_case ? Upper(c) : c];
  }
  std::int64_t count = 0;
  int previous = -1;  // no character before the first
  for (char ch : input) {
    unsigned char c = static_cast<unsigned char>(ch);
    if (ignore_case) c = Upper(c);
    // A run counts once: its later characters equal the one before them.
    if (weight[c] != 0 && !(repeat_as_one && previous == c)) count += weight[c];
    previous = c;
  }
  return count;
}

}  // namespace tolva::util
