#include "fakes/fake_file_system.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tolva/platform/file_patterns.h"

namespace tolva::fakes {

using platform::DirEntry;
using platform::FileError;

namespace {

bool Failed(FileError& error, FileError value) {
  error = std::move(value);
  return false;
}

class FakeFile : public platform::File {
 public:
  FakeFile(FakeFileSystem& fs, std::string path, bool writable)
      : fs_(fs), path_(std::move(path)), writable_(writable) {}
  bool Read(void* buffer, std::size_t n, std::size_t& got, FileError& error) override {
    got = 0;
    auto it = fs_.nodes.find(path_);
    if (it == fs_.nodes.end()) return Failed(error, FakeFileSystem::FileNotFound());
    const std::string& d = it->second.data;
    if (pos_ < d.size()) got = std::min(n, d.size() - pos_);
    if (got) std::memcpy(buffer, d.data() + pos_, got);
    pos_ += got;
    fs_.bytes_read += got;
    return true;
  }
  bool Write(const void* buffer, std::size_t n, FileError& error) override {
    auto it = fs_.nodes.find(path_);
    if (!writable_ || it == fs_.nodes.end()) return Failed(error, FakeFileSystem::AccessError());
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
  AddDirectory("/tmp");
  AddDirectory(windows_directory);
  AddDirectory(system_directory);
}

std::string FakeFileSystem::Normalize(const std::string& path) const {
  std::string p = platform::ToPlatformPath(path);
  if (p.empty() || p[0] != '/') p = cwd + "/" + p;
  std::vector<std::string> parts;
  for (std::size_t i = 0, j; i <= p.size(); i = j + 1) {
    j = std::min(p.find('/', i), p.size());
    const std::string seg = p.substr(i, j - i);
    if (seg == ".." && !parts.empty()) parts.pop_back();
    if (!seg.empty() && seg != "." && seg != "..") parts.push_back(seg);
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
  nodes[n] = Node{false, data, time, false};
}

const FakeFileSystem::Node* FakeFileSystem::At(const std::string& path) const {
  auto it = nodes.find(Normalize(path));
  return it == nodes.end() ? nullptr : &it->second;
}

void FakeFileSystem::Fail(Op op, const std::string& path, FileError error) {
  failures_[{op, Normalize(path)}] = std::move(error);
}

bool FakeFileSystem::Injected(Op op, const std::string& normalized, FileError& error) const {
  auto it = failures_.find({op, normalized});
  if (it == failures_.end()) return false;
  error = it->second;
  return true;
}

bool FakeFileSystem::ParentIsDirectory(const std::string& n) const {
  const std::size_t slash = n.rfind('/');
  return IsDirectory(slash == 0 ? "/" : n.substr(0, slash));
}

// The listing entry of a node, with the attributes the real service reports.
static DirEntry Entry(const std::string& name, const FakeFileSystem::Node& node) {
  return {
      name,
      node.directory ? platform::kAttrDirectory : (node.read_only ? platform::kAttrReadOnly : platform::kAttrNormal),
      node.data.size()};
}

bool FakeFileSystem::List(const std::string& pattern, std::uint32_t attributes, std::vector<DirEntry>& out,
                          FileError&) {
  out.clear();
  const std::string raw = platform::ToPlatformPath(pattern);
  if (raw.empty()) return true;
  std::string dir, last;
  platform::SplitLastSegment(raw, dir, last);
  if (!platform::HasWildcard(last)) {
    // An exactly named entry is found whatever its name looks like.
    auto it = nodes.find(Normalize(raw));
    if (it == nodes.end()) return true;
    if (raw.back() == '/' && !it->second.directory) return true;  // "file/" names no file
    if (it->second.directory && !(attributes & platform::kAttrDirectory)) return true;
    const std::string name = it->first.substr(it->first.rfind('/') + 1);
    out.push_back(Entry(name.empty() ? "/" : name, it->second));
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
    out.push_back(Entry(name, node));
  }
  return true;
}

bool FakeFileSystem::CurrentDirectory(std::string& directory, FileError&) {
  directory = cwd;
  return true;
}

bool FakeFileSystem::ChangeDirectory(const std::string& directory, FileError& error) {
  calls.push_back("cd " + directory);
  const std::string n = Normalize(directory);
  if (directory.empty() || !IsDirectory(n)) return Failed(error, PathNotFound());
  cwd = n;
  return true;
}

bool FakeFileSystem::MakeDirectory(const std::string& directory, FileError& error) {
  calls.push_back("mkdir " + directory);
  const std::string n = Normalize(directory);
  if (nodes.count(n)) return Failed(error, AccessError());
  if (!ParentIsDirectory(n)) return Failed(error, PathNotFound());
  nodes[n].directory = true;
  return true;
}

bool FakeFileSystem::DeleteFiles(const std::string& pattern, FileError& error) {
  std::vector<DirEntry> found;
  if (!List(pattern, platform::kAttrNormal, found, error)) return false;
  if (found.empty()) return Failed(error, FileNotFound());
  std::string dir, last;
  platform::SplitLastSegment(platform::ToPlatformPath(pattern), dir, last);
  bool ok = true;
  for (const auto& e : found) {
    const std::string path = Normalize(dir.empty() ? e.name : dir + "/" + e.name);
    if (nodes[path].read_only && ok) ok = Failed(error, AccessError());
    if (!nodes[path].read_only) nodes.erase(path);
  }
  return ok;
}

bool FakeFileSystem::SetAttributesNormal(const std::string& path, FileError& error) {
  auto it = nodes.find(Normalize(path));
  if (it == nodes.end()) return Failed(error, FileNotFound());
  it->second.read_only = false;
  return true;
}

bool FakeFileSystem::Length(const std::string& path, std::uint64_t& length, FileError& error) {
  const Node* n = At(path);
  if (!n || n->directory) return Failed(error, FileNotFound());
  length = n->data.size();
  return true;
}

bool FakeFileSystem::LastWriteTime(const std::string& path, platform::FileTime& time, FileError& error) {
  const Node* n = At(path);
  if (!n) return Failed(error, FileNotFound());
  time = n->time;
  return true;
}

std::unique_ptr<platform::File> FakeFileSystem::Open(const std::string& path, platform::OpenMode mode,
                                                     FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kOpen, n, error)) return nullptr;
  auto it = nodes.find(n);
  const bool missing = it == nodes.end(), write = mode != platform::OpenMode::kRead;
  FileError refused;
  if (!missing && (it->second.directory || (write && it->second.read_only))) refused = AccessError();
  if (missing) refused = ParentIsDirectory(n) ? (write ? FileError{} : FileNotFound()) : PathNotFound();
  if (refused) return Failed(error, refused), nullptr;
  if (!write) return std::make_unique<FakeFile>(*this, n, false);
  if (mode == platform::OpenMode::kWriteReplace || missing) nodes[n].data.clear();
  return std::make_unique<FakeFile>(*this, n, true);
}

bool FakeFileSystem::ReadAll(const std::string& path, std::string& out, FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kOpen, n, error)) return false;
  auto it = nodes.find(n);
  if (it == nodes.end() || it->second.directory)
    return Failed(error, it == nodes.end() ? FileNotFound() : AccessError());
  out = it->second.data;
  bytes_read += out.size();
  return true;
}

bool FakeFileSystem::WriteAll(const std::string& path, const std::string& data, FileError& error) {
  const std::string n = Normalize(path);
  if (Injected(Op::kWrite, n, error)) return false;
  if (path.empty()) return Failed(error, {52, "Bad file name or number"});
  auto it = nodes.find(n);
  if (it != nodes.end() && (it->second.directory || it->second.read_only)) return Failed(error, AccessError());
  if (!ParentIsDirectory(n)) return Failed(error, PathNotFound());
  nodes[n].data = data;
  return true;
}

bool FakeFileSystem::TempFileName(const std::string& directory, const std::string& prefix, std::string& name,
                                  FileError& error) {
  std::string dir = platform::ToPlatformPath(directory);
  if (!dir.empty() && dir.back() != '/') dir += '/';
  if (Injected(Op::kWrite, Normalize(dir.empty() ? "." : dir), error)) return false;
  if (!IsDirectory(dir.empty() ? "." : dir)) return Failed(error, PathNotFound());
  char hex[8];
  std::snprintf(hex, sizeof hex, "%X", ++temp_counter_ & 0xFFFF);
  name = dir + prefix.substr(0, 3) + hex + ".tmp";
  AddFile(name, "");
  return true;
}

}  // namespace tolva::fakes
