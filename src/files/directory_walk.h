// The paths DirectoryMake ensures one after another.
#ifndef TOLVA_SRC_FILES_DIRECTORY_WALK_H_
#define TOLVA_SRC_FILES_DIRECTORY_WALK_H_

#include <string>
#include <vector>

namespace tolva::files {

// The text before each separator ("\" or "/"), left to right, then the
// whole path: "a/b\c" gives "a", "a/b", "a/b\c". The first entry stands
// for the drive and an absolute path's first entry is empty (the root).
inline std::vector<std::string> DirectoryPrefixes(const std::string& path) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < path.size(); ++i)
    if (path[i] == '\\' || path[i] == '/') out.push_back(path.substr(0, i));
  out.push_back(path);
  return out;
}

}  // namespace tolva::files

#endif  // TOLVA_SRC_FILES_DIRECTORY_WALK_H_
