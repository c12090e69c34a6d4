// Shortens a long path for display by putting "..." in place of the
// directories between its beginning and its end.
#ifndef TOLVA_SRC_PATHS_PATH_SHORTENER_H_
#define TOLVA_SRC_PATHS_PATH_SHORTENER_H_

#include <string>
#include <string_view>

namespace tolva::paths {

struct ShortenOptions {
  std::string_view delimiter;  // "", "/" or "\"; anything else leaves the path as it is
  long max_length = 30;
  long start_keep = 2;     // characters never looked at (a drive, the "\\" of a share)
  long slashes_start = 2;  // separator runs kept at the start
  long slashes_end = 2;    // separator runs kept at the end, at the least
};

// Returns `path` trimmed of blanks, shortened when it is longer than
// max_length and has more separator runs than the two ends keep. Runs in
// linear time: the end part is chosen from a table of run positions built
// in one right-to-left pass instead of rescanning the path for each try.
std::string ShortenPath(std::string_view path, const ShortenOptions& options);

}  // namespace tolva::paths

#endif  // TOLVA_SRC_PATHS_PATH_SHORTENER_H_
