#include "paths/path_shortener.h"

#include <vector>

#include "paths/path_text.h"

namespace tolva::paths {

namespace {

// Number of runs of `d` (consecutive `d` characters count once) in s[from..].
long CountRuns(std::string_view s, std::size_t from, char d) {
  long runs = 0;
  for (std::size_t i = from; i < s.size(); ++i) {
    if (s[i] == d && (i == from || s[i - 1] != d)) ++runs;
  }
  return runs;
}

}  // namespace

std::string ShortenPath(std::string_view path, const ShortenOptions& o) {
  const std::string p(TrimBlanks(path));
  const std::size_t len = p.size();
  const std::size_t keep = o.start_keep < 1 ? 0 : static_cast<std::size_t>(o.start_keep);
  const long slashes_start = o.slashes_start < 1 ? 1 : o.slashes_start;
  const long slashes_end = o.slashes_end < 1 ? 1 : o.slashes_end;

  if (p.empty() || static_cast<long long>(len) <= o.max_length) return p;
  const std::size_t from = keep < len ? keep : len;

  char d;
  if (o.delimiter.empty()) {
    const long forward = CountRuns(p, from, '/');
    const long back = CountRuns(p, from, '\\');
    if (forward + back <= slashes_start + slashes_end) return p;
    d = forward > back ? '/' : '\\';  // a tie chooses "\"
  } else if (o.delimiter == "/" || o.delimiter == "\\") {
    d = o.delimiter[0];
  } else {
    return p;
  }

  const long runs = CountRuns(p, from, d);
  if (runs <= slashes_start + slashes_end) return p;

  // Start part: up to and including the character that opens run number
  // `slashes_start`, scanning left to right.
  std::size_t start_end = std::string::npos;
  long opened = 0;
  for (std::size_t i = from; i < len; ++i) {
    if (p[i] == d && (i == from || p[i - 1] != d) && ++opened == slashes_start) {
      start_end = i;
      break;
    }
  }
  if (start_end == std::string::npos) return p;

  // closes[k - 1] = position of the right-most character of the k-th run
  // counted from the right.
  std::vector<std::size_t> closes;
  for (std::size_t i = len; i-- > from;) {
    if (p[i] == d && (i + 1 == len || p[i + 1] != d)) closes.push_back(i);
  }

  // One less than the runs the start part does not keep, so that at least
  // one directory is always dropped; then fewer until the candidate fits.
  long e = runs - slashes_start - 1;
  const std::size_t start_len = start_end + 1;
  long chosen = -1;
  for (; e >= slashes_end; --e) {
    if (e < 1 || static_cast<std::size_t>(e) > closes.size()) return p;  // no such run: give up
    chosen = e;
    const std::size_t candidate_len = start_len + 3 + (len - closes[e - 1]);
    if (static_cast<long long>(candidate_len) <= o.max_length) break;
  }
  if (chosen < 1) return p;
  // The last candidate built, even when it is still too long.
  return p.substr(0, start_len) + "..." + p.substr(closes[chosen - 1]);
}

}  // namespace tolva::paths
