// Fuzz target of FilePathShorten and the path splitters. Byte 0 picks the
// delimiter, bytes 1 to 4 the limits (signed); the rest is the path.
#include <algorithm>
#include <string>

#include "fuzz/fuzz_target.h"
#include "tolva/tolva2011register.h"

namespace {

// Runs of `d` in s[from, to): consecutive delimiters count once.
long Runs(const std::string& s, std::size_t from, std::size_t to, char d) {
  long runs = 0;
  for (std::size_t i = from; i < to; ++i) runs += s[i] == d && (i == from || s[i - 1] != d);
  return runs;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tolva::Long;
  if (size < 5) return 0;
  static tolva::Tolva2011Register c{tolva::platform::Services{}};
  static const char* const kDelimiters[] = {"", "/", "\\", "|", "//"};
  const std::string delimiter = kDelimiters[data[0] % 5];
  const Long max_length = static_cast<std::int8_t>(data[1]), start_keep = static_cast<std::int8_t>(data[2]) % 8;
  const Long slashes_start = static_cast<std::int8_t>(data[3]) % 6, slashes_end = static_cast<std::int8_t>(data[4]) % 6;
  const std::string text(reinterpret_cast<const char*>(data + 5), size - 5);

  const std::string shortened = c.FilePathShorten(text, delimiter, max_length, start_keep, slashes_start, slashes_end);
  const std::size_t b = text.find_first_not_of(' ');
  const std::string p = b == std::string::npos ? "" : text.substr(b, text.find_last_not_of(' ') - b + 1);
  const std::size_t keep = std::min<std::size_t>(std::max<Long>(start_keep, 0), p.size());
  const long ss = std::max<Long>(slashes_start, 1), se = std::max<Long>(slashes_end, 1);
  const long forward = Runs(p, keep, p.size(), '/'), back = Runs(p, keep, p.size(), '\\');
  const char d = delimiter.empty() ? (forward > back ? '/' : '\\') : delimiter[0];
  const long runs = d == '/' ? forward : back;
  if (static_cast<long>(p.size()) <= max_length || (!delimiter.empty() && delimiter != "/" && delimiter != "\\") ||
      (delimiter.empty() && forward + back <= ss + se) || runs <= ss + se) {
    Check(shortened == p, "a path that is not shortened comes back trimmed");
  } else {
    // start + "..." + end: the start keeps `ss` runs and ends on the one it
    // opened, the end begins with a delimiter, something between is dropped,
    // and an end that still does not fit keeps no more than `se` runs.
    bool found = false;
    for (std::size_t x = 1; !found && x + 3 <= shortened.size() && x < p.size(); ++x) {
      const std::size_t end_size = shortened.size() - x - 3, y = p.size() - end_size;
      found = end_size > 0 && end_size < p.size() && y > x && shortened.compare(0, x, p, 0, x) == 0 &&
              shortened.compare(x, 3, "...") == 0 && shortened.compare(x + 3, end_size, p, y) == 0 && x > keep &&
              Runs(p, keep, x, d) == ss && p[x - 1] == d && (x - 1 == keep || p[x - 2] != d) && p[y] == d &&
              (y + 1 == p.size() || p[y + 1] != d) && y >= keep && Runs(p, y, p.size(), d) >= se &&
              Runs(p, y, p.size(), d) <= runs - ss - 1 &&
              (static_cast<long>(shortened.size()) <= max_length || Runs(p, y, p.size(), d) == se);
    }
    Check(found, "a shortened path is its start, \"...\" and its end");
  }

  const std::string directory = c.FileDirectory(text), name = c.FileName(text), only = c.FileNameOnly(text);
  Check(directory + name == text && name.find_first_of("/\\") == std::string::npos, "directory and name split");
  Check(name.compare(0, only.size(), only) == 0 && name.rfind('.') == (only == name ? std::string::npos : only.size()),
        "the name without extension ends at the name's last dot");
  return 0;
}
