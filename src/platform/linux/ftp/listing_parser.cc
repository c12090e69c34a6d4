#include "platform/linux/ftp/listing_parser.h"

#include <array>
#include <cctype>
#include <cstdint>
#include <string>

namespace tolva::platform::posix::ftp {
namespace {

bool IsDigits(std::string_view s) {
  if (s.empty()) return false;
  for (char c : s) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

// Digits only, at most 20 of them, and no overflow.
bool ToUint64(std::string_view s, std::uint64_t& value) {
  if (!IsDigits(s) || s.size() > 20) return false;
  std::uint64_t v = 0;
  for (char c : s) {
    const std::uint64_t digit = static_cast<std::uint64_t>(c - '0');
    if (v > (UINT64_MAX - digit) / 10) return false;
    v = v * 10 + digit;
  }
  value = v;
  return true;
}

int ToInt(std::string_view s) {
  int v = 0;
  for (char c : s) v = v * 10 + (c - '0');
  return v;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  }
  return true;
}

int MonthNumber(std::string_view s) {
  static constexpr std::array<std::string_view, 12> kMonths = {"jan", "feb", "mar", "apr", "may", "jun",
                                                               "jul", "aug", "sep", "oct", "nov", "dec"};
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (EqualsIgnoreCase(s, kMonths[i])) return static_cast<int>(i) + 1;
  }
  return 0;
}

struct Token {
  std::string_view text;
  std::size_t end;  // offset just past the token in the line
};

// Blank-separated tokens with their end offsets, so the name can be taken
// from the line itself (it may hold blanks of its own).
std::vector<Token> Tokens(std::string_view line, std::size_t max_tokens) {
  std::vector<Token> tokens;
  std::size_t i = 0;
  while (i < line.size() && tokens.size() < max_tokens) {
    while (i < line.size() && line[i] == ' ') ++i;
    if (i >= line.size()) break;
    std::size_t start = i;
    while (i < line.size() && line[i] != ' ') ++i;
    tokens.push_back({line.substr(start, i - start), i});
  }
  return tokens;
}

bool ValidDate(int year, int month, int day) {
  return year >= 1601 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

}  // namespace

bool ListingParser::ParseMlsdLine(std::string_view line, FindData& entry) const noexcept {
  try {
    // Facts end at the first blank; everything after it is the name.
    const auto space = line.find(' ');
    if (space == std::string_view::npos || space == 0 || space + 1 >= line.size()) return false;
    std::string_view facts = line.substr(0, space);
    FindData e;
    e.name = std::string(line.substr(space + 1));
    bool typed = false;
    while (!facts.empty()) {
      const auto semi = facts.find(';');
      std::string_view fact = facts.substr(0, semi);
      facts = semi == std::string_view::npos ? std::string_view{} : facts.substr(semi + 1);
      const auto eq = fact.find('=');
      if (eq == std::string_view::npos) continue;
      std::string_view key = fact.substr(0, eq), value = fact.substr(eq + 1);
      if (EqualsIgnoreCase(key, "type")) {
        typed = true;
        // The listed directory itself (cdir) and its parent (pdir) are
        // directories like any other: a host counts what the server lists.
        const bool directory =
            EqualsIgnoreCase(value, "dir") || EqualsIgnoreCase(value, "cdir") || EqualsIgnoreCase(value, "pdir");
        e.attributes = directory ? kFileAttributeDirectory : kFileAttributeNormal;
      } else if (EqualsIgnoreCase(key, "size")) {
        ToUint64(value, e.size);
      } else if (EqualsIgnoreCase(key, "modify")) {
        std::string_view stamp = value.substr(0, value.find('.'));
        if (stamp.size() == 14 && IsDigits(stamp)) {
          FindTime t;
          t.year = ToInt(stamp.substr(0, 4));
          t.month = ToInt(stamp.substr(4, 2));
          t.day = ToInt(stamp.substr(6, 2));
          t.hour = ToInt(stamp.substr(8, 2));
          t.minute = ToInt(stamp.substr(10, 2));
          t.second = ToInt(stamp.substr(12, 2));
          t.valid = ValidDate(t.year, t.month, t.day) && t.hour < 24 && t.minute < 60 && t.second < 61;
          if (t.valid) e.last_write = t;
        }
      }
    }
    if (!typed) e.attributes = kFileAttributeNormal;
    entry = std::move(e);
    return true;
  } catch (...) {
    return false;
  }
}

bool ListingParser::ParseListLine(std::string_view line, FindData& entry) const noexcept {
  try {
    if (line.empty()) return false;
    if (line[0] >= '0' && line[0] <= '9') return ParseDosLine(line, entry);
    return ParseUnixLine(line, entry);
  } catch (...) {
    return false;
  }
}

// drwxr-xr-x   2 owner group  4096 Jan  5 12:34 name
// -rw-r--r--   1 0     0       123 Jan 05  2020 name with blanks
// lrwxrwxrwx   1 owner group     7 Jan  5  2020 link -> target
// Owner or group may be missing, so the date is found by its shape: a month
// name followed by a day and a time or year; the size stands just before it.
bool ListingParser::ParseUnixLine(std::string_view line, FindData& entry) const {
  const auto tokens = Tokens(line, 12);
  if (tokens.size() < 6) return false;
  std::string_view perms = tokens[0].text;
  if (perms.size() < 10 || std::string_view("-dlbcpsD").find(perms[0]) == std::string_view::npos) return false;
  for (std::size_t i = 3; i + 2 < tokens.size(); ++i) {
    const int month = MonthNumber(tokens[i].text);
    if (month == 0) continue;
    std::string_view day = tokens[i + 1].text, when = tokens[i + 2].text;
    if (!IsDigits(day) || day.size() > 2) continue;
    std::uint64_t size = 0;
    if (!ToUint64(tokens[i - 1].text, size)) continue;
    FindTime t;
    t.month = month;
    t.day = ToInt(day);
    const auto colon = when.find(':');
    if (colon != std::string_view::npos) {
      std::string_view h = when.substr(0, colon), m = when.substr(colon + 1);
      if (!IsDigits(h) || !IsDigits(m) || h.size() > 2 || m.size() != 2) continue;
      t.year = current_year_;  // no year in the listing: this year, the caller corrects it
      t.hour = ToInt(h);
      t.minute = ToInt(m);
      if (t.hour > 23 || t.minute > 59) continue;
    } else {
      if (!IsDigits(when) || when.size() != 4) continue;
      t.year = ToInt(when);
    }
    t.valid = ValidDate(t.year, t.month, t.day);
    // Exactly one blank separates the date from the name; more are part of it.
    const std::size_t name_start = tokens[i + 2].end + 1;
    if (name_start >= line.size()) return false;
    std::string_view name = line.substr(name_start);
    FindData e;
    if (perms[0] == 'l') {
      const auto arrow = name.find(" -> ");
      if (arrow != std::string_view::npos) name = name.substr(0, arrow);
    }
    if (name.empty()) return false;
    e.name = std::string(name);
    e.attributes = perms[0] == 'd' ? kFileAttributeDirectory : kFileAttributeNormal;
    e.size = size;
    if (t.valid) e.last_write = t;
    entry = std::move(e);
    return true;
  }
  return false;
}

// 01-05-20  12:34PM       <DIR>          name
// 01-05-2020  09:03AM              1234 name with blanks
bool ListingParser::ParseDosLine(std::string_view line, FindData& entry) const {
  const auto tokens = Tokens(line, 3);
  if (tokens.size() < 3) return false;
  std::string_view date = tokens[0].text, time = tokens[1].text, kind = tokens[2].text;
  if (date.size() != 8 && date.size() != 10) return false;
  if (date[2] != '-' || date[5] != '-') return false;
  std::string_view mm = date.substr(0, 2), dd = date.substr(3, 2), yy = date.substr(6);
  if (!IsDigits(mm) || !IsDigits(dd) || !IsDigits(yy)) return false;
  FindTime t;
  t.month = ToInt(mm);
  t.day = ToInt(dd);
  t.year = ToInt(yy);
  if (yy.size() == 2) t.year += t.year < 70 ? 2000 : 1900;
  // hh:mm followed by AM or PM.
  if (time.size() != 7 || time[2] != ':') return false;
  std::string_view hh = time.substr(0, 2), mi = time.substr(3, 2), ampm = time.substr(5);
  if (!IsDigits(hh) || !IsDigits(mi)) return false;
  t.hour = ToInt(hh) % 12;
  t.minute = ToInt(mi);
  if (EqualsIgnoreCase(ampm, "PM"))
    t.hour += 12;
  else if (!EqualsIgnoreCase(ampm, "AM"))
    return false;
  if (t.minute > 59) return false;
  t.valid = ValidDate(t.year, t.month, t.day);
  FindData e;
  if (kind == "<DIR>") {
    e.attributes = kFileAttributeDirectory;
  } else if (ToUint64(kind, e.size)) {
    e.attributes = kFileAttributeNormal;
  } else {
    return false;
  }
  // The name follows the size column after any run of blanks.
  std::size_t start = tokens[2].end;
  while (start < line.size() && line[start] == ' ') ++start;
  if (start >= line.size()) return false;
  e.name = std::string(line.substr(start));
  if (t.valid) e.last_write = t;
  entry = std::move(e);
  return true;
}

std::vector<FindData> ListingParser::ParseListing(std::string_view text, bool mlsd) const noexcept {
  std::vector<FindData> entries;
  try {
    while (!text.empty()) {
      const auto lf = text.find('\n');
      std::string_view line = text.substr(0, lf);
      text = lf == std::string_view::npos ? std::string_view{} : text.substr(lf + 1);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      FindData entry;
      const bool ok = mlsd ? ParseMlsdLine(line, entry) : ParseListLine(line, entry);
      if (ok) entries.push_back(std::move(entry));
    }
  } catch (...) {
    // Out of memory on a huge listing: keep what was parsed.
  }
  return entries;
}

}  // namespace tolva::platform::posix::ftp
