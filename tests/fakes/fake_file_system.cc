#include "fakes/fake_file_system.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tolva/platform/file_patterns.h"

namespace tolva::fakes {

using platform::DirEntry;
using platform::FileError;

namespace {

class FakeFile : public platform::File {
 public:
  FakeFile(FakeFileSystem& fs, std::string path, bool writable)
      : fs_(fs), path_(std::move(path)), writable_(writable) {}
  bool Read(void* buffer, std::size_t n, std::size_t& got, FileError& error) override {
    got = 0;
    auto it = fs_.nodes.find(path_);
    if (it == fs_.nodes.end()) {
      error = FakeFileSystem::FileNotFound();
      return false;
    }
    const std::string& d = it->second.data;
    if (pos_ < d.size()) got = std::min(n, d.size() - pos_);
    if (got) std::memcpy(buffer, d.data() + pos_, got);
    pos_ += got;
    fs_.bytes_read += got;
    return true;
  }
  bool Write(const void* buffer, std::size_t n, FileError& error) override {
    auto it = fs_.nodes.find(path_);
    if (!writable_ || it == fs_.nodes.end()) {
      error = FakeFileSystem::AccessError();
      return false;
    }
    std::string& d = it->second.data;
    if (d.size() < pos_ + n) d.resize(pos_ + n);
    if (n) std::memcpy(d.data() + pos_, buffer, n);
    pos_ += n;
    return true;
  }
  std::uint64_t Size() override {
    auto it = fs_.nodes.find(path_);
    return it == fs_.nodes.end() ? 0 : it->second.data.size();
  }
  bool Close(FileError&) override { return true; }

 private:
  FakeFileSystem& fs_;
  std::string path_;
  bool writable_;
  std::size_t pos_ = 0;
};

}  // namespace

FakeFileSystem::FakeFileSystem() {
  AddDirectory("/");
  AddDirectory("/tmp");
  AddDirectory(windows_directory);
  AddDirectory(system_directory);
}

std::string FakeFileSystem::Normalize(const std::string& path) const {
  std::string p = platform::ToPlatformPath(path);
  if (p.empty() || p[0] != '/') p = cwd + "/" + p;
  std::vector<std::string> parts;
  std::size_t i = 0;
  while (i <= p.size()) {
    std::size_t j = p.find('/', i);
    if (j == std::string::npos) j = p.size();
    std::string seg = p.substr(i, j - i);
    if (seg == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!seg.empty() && seg != ".") {
      parts.push_back(seg);
    }
    i = j + 1;
  }
  std::string out;
  for (const auto& s : parts) out += "/" + s;
  return out.empty() ? "/" : out;
}

void FakeFileSystem::AddDirectory(const std::string& path) {
  std::string n = Normalize(path);
  for (std::size_t i = 1; i <= n.size(); ++i) {
    if (i == n.size() || n[i] == '/') nodes[n.substr(0, std::max<std::size_t>(i, 1))].directory = true;
  }
  nodes["/"].directory = true;
}

void FakeFileSystem::AddFile(const std::string& path, const std::string& data, platform::FileTime time) {
  std::string n = Normalize(path);
  const std::size_t slash = n.rfind('/');
  if (slash > 0) AddDirectory(n.substr(0, slash));
  Node& node = nodes[n];
  node.directory = false;
  node.data = data;
  node.time = time;
}

bool FakeFileSystem::IsFile(const std::string& path) const {
  auto it = nodes.find(Normalize(path));
  return it != nodes.end() && !it->second.directory;
}

bool FakeFileSystem::IsDirectory(const std::string& path) const {
  auto it = nodes.find(Normalize(path));
  return it != nodes.end() && it->second.directory;
}

std::string FakeFileSystem::Contents(const std::string& path) const {
  auto it = nodes.find(Normalize(path));
  return it == nodes.end() ? std::string() : it->second.data;
}

void FakeFileSystem::Fail(Op op, const std::string& path, FileError error) {
  failures_[{op, path == "*" ? path : Normalize(path)}] = std::move(error);
}

bool FakeFileSystem::Injected(Op op, const std::string& normalized, FileError& error) const {
  auto it = failures_.find({op, normalized});
  if (it == failures_.end()) it = failures_.find({op, "*"});
  if (it == failures_.end()) return false;
  error = it->second;
  return true;
}

bool FakeFileSystem::ParentIsDirectory(const std::string& n) const {
  const std::size_t slash = n.rfind('/');
  return IsDirectory(slash == 0 ? "/" : n.substr(0, slash));
}

bool FakeFileSystem::List(const std::string& pattern, std::uint32_t attributes, std::vector<DirEntry>& out,
                          FileError& error) {
  out.clear();
  const std::string raw = platform::ToPlatformPath(pattern);
  if (raw.empty()) return true;
  if (Injected(Op::kList, Normalize(raw), error)) return false;
  std::string dir, last;
  platform::SplitLastSegment(raw, dir, last);
  if (!platform::HasWildcard(last)) {
    // An exactly named entry is found whatever its name looks like.
    auto it = nodes.find(Normalize(raw));
    if (it == nodes.end()) return true;
    if (raw.back() == '/' && !it->second.directory) return true;  // "file/" names no file
    if (it->second.directory && !(attributes & platform::kAttrDirectory)) return true;
    std::string name = it->first.substr(it->first.rfind('/') + 1);
    out.push_back({name.empty() ? "/" : name,
                   it->second.directory ? platform::kAttrDirectory
                                        : (it->second.read_only ? platform::kAttrReadOnly : platform::kAttrNormal),
                   it->second.data.size()});
    return true;
  }
  const std::string base = Normalize(dir.empty() ? "." : dir);
  const std::string prefix = base == "/" ? "/" : base + "/";
  for (const auto& [path, node] : nodes) {
    if (path.size() <= prefix.size() || path.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string name = path.substr(prefix.size());
    if (name.find('/') != std::string::npos) continue;
    if (node.directory && !(attributes & platform::kAttrDirectory)) continue;
    if (name[0] == '.' && !(attributes & platform::kAttrHidden)) continue;
    if (!platform::MatchWildcard(name, last)) continue;
    out.push_back(
        {name,
         node.directory ? platform::kAttrDirectory : (node.read_only ? platform::kAttrReadOnly : platform::kAttrNormal),
         node.data.size()});
  }
  return true;
}

bool FakeFileSystem::CurrentDirectory(std::string& directory, FileError& error) {
  if (Injected(Op::kCurrentDirectory, "*", error)) return false;
  directory = cwd;
  return true;
}

bool FakeFileSystem::ChangeDirectory(const std::string& directory, FileError& error) {
  calls.push_back("cd " + directory);
  const std::string n = Normalize(directory);
  if (Injected(Op::kChangeDirectory, n, error)) return false;
  if (directory.empty() || !IsDirectory(n)) {
    error = PathNotFound();
    return false;
  }
  cwd = n;
  return true;
}

bool FakeFileSystem::MakeDirectory(const std::string& directory, FileError& error) {
  calls.push_back("mkdir " + directory);
  const std::string n = Normalize(directory);
  if (Injected(Op::kMakeDirectory, n, error)) return false;
  if (nodes.count(n)) {
    error = AccessError();
    return false;
  }
  if (!ParentIsDirectory(n)) {
    error = PathNotFound();
    return false;
  }
  nodes[n].directory = true;
  return true;
}

bool FakeFileSystem::DeleteFiles(const std::string& pattern, FileError& error) {
  calls.push_back("delete " + pattern);
  if (Injected(Op::kDelete, Normalize(pattern), error)) return false;
  std::vector<DirEntry> found;
  if (!List(pattern, platform::kAttrNormal, found, error)) return false;
  if (found.empty()) {
    error = FileNotFound();
    return false;
  }
  std::string dir, last;
  platform::SplitLastSegment(platform::ToPlatformPath(pattern), dir, last);
  bool ok = true;
  for (const auto& e : found) {
    const std::string path = Normalize(dir.empty() ? e.name : dir + "/" + e.name);
    if (nodes[path].read_only) {
      if (ok) error = AccessError();
      ok = false;
      continue;
    }
    nodes.erase(path);
  }
  return ok;
}

bool FakeFileSystem::SetAttributesNormal(const std::string& path, FileError& error) {
  calls.push_back("attrib " + path);
  const std::string n = Normalize(path);
  if (Injected(Op::kSetAttributes, n, error)) return false;
  auto it = nodes.find(n);
  if (it == nodes.end()) {
    error = FileNotFound();
    return false;
  }
  it->second.read_only = false;
  return true;
}

bool FakeFileSystem::Length(const std::string& path, std::uint64_t& length, FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kLength, n, error)) return false;
  auto it = nodes.find(n);
  if (it == nodes.end() || it->second.directory) {
    error = FileNotFound();
    return false;
  }
  length = it->second.data.size();
  return true;
}

bool FakeFileSystem::LastWriteTime(const std::string& path, platform::FileTime& time, FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kLastWriteTime, n, error)) return false;
  auto it = nodes.find(n);
  if (it == nodes.end()) {
    error = FileNotFound();
    return false;
  }
  time = it->second.time;
  return true;
}

std::unique_ptr<platform::File> FakeFileSystem::Open(const std::string& path, platform::OpenMode mode,
                                                     FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kOpen, n, error)) return nullptr;
  auto it = nodes.find(n);
  if (it != nodes.end() && it->second.directory) {
    error = AccessError();
    return nullptr;
  }
  if (mode == platform::OpenMode::kRead) {
    if (it == nodes.end()) {
      error = ParentIsDirectory(n) ? FileNotFound() : PathNotFound();
      return nullptr;
    }
    return std::make_unique<FakeFile>(*this, n, false);
  }
  calls.push_back("open-write " + path);
  if (it == nodes.end()) {
    if (!ParentIsDirectory(n)) {
      error = PathNotFound();
      return nullptr;
    }
    nodes[n];
  } else if (it->second.read_only) {
    error = AccessError();
    return nullptr;
  } else if (mode == platform::OpenMode::kWriteReplace) {
    it->second.data.clear();
  }
  return std::make_unique<FakeFile>(*this, n, true);
}

bool FakeFileSystem::ReadAll(const std::string& path, std::string& out, FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kOpen, n, error) || Injected(Op::kRead, n, error)) return false;
  auto it = nodes.find(n);
  if (it == nodes.end() || it->second.directory) {
    error = it == nodes.end() ? FileNotFound() : AccessError();
    return false;
  }
  out = it->second.data;
  bytes_read += out.size();
  return true;
}

bool FakeFileSystem::WriteAll(const std::string& path, const std::string& data, FileError& error) {
  calls.push_back("write " + path);
  const std::string n = Normalize(path);
  if (Injected(Op::kWrite, n, error)) return false;
  if (path.empty()) {
    error = {52, "Bad file name or number"};
    return false;
  }
  auto it = nodes.find(n);
  if (it != nodes.end() && (it->second.directory || it->second.read_only)) {
    error = AccessError();
    return false;
  }
  if (!ParentIsDirectory(n)) {
    error = PathNotFound();
    return false;
  }
  nodes[n].data = data;
  return true;
}

bool FakeFileSystem::TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                                  FileError& error) {
  std::string dir = platform::ToPlatformPath(directory);
  if (!dir.empty() && dir.back() != '/') dir += '/';
  if (Injected(Op::kWrite, Normalize(dir.empty() ? "." : dir), error)) return false;
  if (!IsDirectory(dir.empty() ? "." : dir)) {
    error = PathNotFound();
    return false;
  }
  char hex[8];
  std::snprintf(hex, sizeof hex, "%X", ++temp_counter & 0xFFFF);
  name = dir + prefix.substr(0, 3) + hex + ".tmp";
  AddFile(name, "");
  calls.push_back("tempfile " + name);
  return true;
}

}  // namespace tolva::fakes
