#include "settings/setting_text.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tolva::settings {

namespace {

char Lower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

}  // namespace

std::string LongText(Long value) {
  return std::to_string(value);
}

std::string DoubleText(Double value) {
  // Fifteen significant digits, as the host prints a Double; "%G" keeps the
  // exponent upper case ("1E+20").
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15G", value);
  return buf;
}

Double LeadingNumber(std::string_view text) noexcept {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  const std::size_t start = i;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  // An exponent counts only when digits follow it: "2e" is 2.
  if (i < text.size() && (Lower(text[i]) == 'e' || Lower(text[i]) == 'd')) {
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    if (j < text.size() && IsDigit(text[j])) {
      while (j < text.size() && IsDigit(text[j])) ++j;
      i = j;
    }
  }
  std::string number(text.substr(start, i - start));
  for (char& c : number)
    if (c == 'd' || c == 'D') c = 'e';
  const double v = std::strtod(number.c_str(), nullptr);
  return std::isfinite(v) ? v : 0;
}

Long RoundToLong(Double value) noexcept {
  if (!std::isfinite(value)) return 0;
  const double r = std::nearbyint(value);  // the default rounding: halves to even
  if (r >= 2147483647.0) return 2147483647;
  if (r <= -2147483648.0) return static_cast<Long>(-2147483647 - 1);
  return static_cast<Long>(r);
}

const char* BooleanSaveText(Boolean value) noexcept {
  return value ? "True" : "False";
}
const char* BooleanDefaultText(Boolean value) noexcept {
  return value ? "true" : "false";
}

std::optional<Boolean> BooleanFromText(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = Lower(c);
  if (lower == "false" || lower == "0" || lower == "no") return kFalse;
  if (lower == "true" || lower == "1" || lower == "-1" || lower == "yes") return kTrue;
  return std::nullopt;
}

bool SameName(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (Lower(a[i]) != Lower(b[i])) return false;
  return true;
}

}  // namespace tolva::settings
