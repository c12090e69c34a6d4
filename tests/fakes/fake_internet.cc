#include "fakes/fake_internet.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tolva/platform/file_patterns.h"

namespace tolva::fakes {

using platform::FindData;
using platform::InternetHandle;

namespace {

std::string Hex(std::uint32_t v) {
  char b[16];
  std::snprintf(b, sizeof b, "%x", v);
  return b;
}

// ASCII transfers: CR LF on the local side, LF on the server.
std::string ToCrLf(const std::string& s) {
  std::string out;
  out.reserve(s.size() + s.size() / 16);
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\n' && (i == 0 || s[i - 1] != '\r')) out += '\r';
    out += s[i];
  }
  return out;
}

std::string ToLf(const std::string& s) {
  std::string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\r' && i + 1 < s.size() && s[i + 1] == '\n') continue;
    out += s[i];
  }
  return out;
}

std::string NoSuchFile(const std::string& name) {
  return "550 " + name + ": No such file or directory.\r\n";
}

}  // namespace

FakeInternet::FakeInternet(std::shared_ptr<platform::FileSystem> local) : local_(std::move(local)) {
  nodes["/"] = RemoteNode{true, "", std::nullopt, {}};
}

void FakeInternet::AddDirectory(const std::string& path) {
  std::string p;
  std::size_t start = 1;
  while (start <= path.size()) {
    const std::size_t slash = path.find('/', start);
    const std::size_t end = slash == std::string::npos ? path.size() : slash;
    if (end > start) {
      p += "/" + path.substr(start, end - start);
      nodes[p].directory = true;
    }
    start = end + 1;
  }
}

void FakeInternet::AddFile(const std::string& path, const std::string& data, platform::FindTime time) {
  AddDirectory(Parent(path));
  RemoteNode n;
  n.data = data;
  n.time = time;
  nodes[path] = n;
}

void FakeInternet::Fail(Op op, std::uint32_t code, const std::string& response, int skip, int times) {
  failures_[op].push_back({skip, times, code, response});
}

int FakeInternet::Count(Op op) const {
  auto it = counts_.find(op);
  return it == counts_.end() ? 0 : it->second;
}

bool FakeInternet::IsFile(const std::string& path) const {
  auto it = nodes.find(path);
  return it != nodes.end() && !it->second.directory;
}

bool FakeInternet::IsDirectory(const std::string& path) const {
  auto it = nodes.find(path);
  return it != nodes.end() && it->second.directory;
}

std::string FakeInternet::Contents(const std::string& path) const {
  auto it = nodes.find(path);
  return it == nodes.end() ? std::string() : it->second.data;
}

bool FakeInternet::Enter(Op op, const std::string& line) {
  ++counts_[op];
  log.push_back(line);
  if (on_call) on_call(op);
  if (throwing_[op]) throw std::runtime_error("entry point not found");
  auto& queue = failures_[op];
  if (queue.empty()) return false;
  Failure& f = queue.front();
  if (f.skip > 0) {
    --f.skip;
    return false;
  }
  Error(f.code, f.response);
  if (f.times > 0 && --f.times == 0) queue.pop_front();
  return true;
}

bool FakeInternet::Error(std::uint32_t code, const std::string& response) {
  last_error_ = code;
  if (code == platform::kErrorInternetExtendedError) last_response_ = response;
  return false;
}

FakeInternet::Handle* FakeInternet::Find(InternetHandle h, Kind kind) {
  auto it = handles_.find(h);
  if (it == handles_.end() || it->second.kind != kind) {
    Error(platform::kErrorInvalidHandle);
    return nullptr;
  }
  return &it->second;
}

FakeInternet::Handle* FakeInternet::Ready(InternetHandle connection) {
  Handle* c = Find(connection, Kind::kConnection);
  if (!c) return nullptr;
  for (const auto& [h, child] : handles_) {
    if (child.parent == connection) {
      Error(platform::kErrorFtpTransferInProgress);
      return nullptr;
    }
  }
  return c;
}

std::string FakeInternet::Resolve(const Handle& connection, const std::string& path) const {
  const std::string joined = !path.empty() && path[0] == '/' ? path : connection.cwd + "/" + path;
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= joined.size()) {
    std::size_t slash = joined.find('/', start);
    if (slash == std::string::npos) slash = joined.size();
    const std::string seg = joined.substr(start, slash - start);
    if (seg == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!seg.empty() && seg != ".") {
      parts.push_back(seg);
    }
    start = slash + 1;
  }
  std::string out;
  for (const auto& p : parts) out += "/" + p;
  return out.empty() ? "/" : out;
}

std::string FakeInternet::Parent(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string FakeInternet::Name(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

FindData FakeInternet::Describe(const std::string& path, const RemoteNode& node) const {
  FindData d;
  d.attributes = node.directory ? platform::kFileAttributeDirectory : platform::kFileAttributeNormal;
  d.size = node.listed_size ? *node.listed_size : node.data.size();
  d.last_write = node.time;
  d.name = Name(path);
  return d;
}

void FakeInternet::CloseTree(InternetHandle h) {
  std::vector<InternetHandle> children;
  for (const auto& [k, v] : handles_)
    if (v.parent == h) children.push_back(k);
  for (InternetHandle c : children) CloseTree(c);
  handles_.erase(h);
}

InternetHandle FakeInternet::Open(const std::string& agent, std::uint32_t, std::uint32_t) {
  if (Enter(Op::kOpen, "Open " + agent)) return 0;
  last_agent = agent;
  const InternetHandle h = next_handle++;
  handles_[h] = Handle{Kind::kInternet};
  return h;
}

InternetHandle FakeInternet::Connect(InternetHandle internet, const std::string& host, std::uint16_t port,
                                     const std::string& user, const std::string& password, std::uint32_t,
                                     std::uint32_t flags) {
  if (Enter(Op::kConnect, "Connect " + host + " " + user)) return 0;
  last_host = host;
  last_port = port;
  last_connect_flags = flags;
  if (!Find(internet, Kind::kInternet)) return 0;
  if (host != "localhost" && host != "127.0.0.1" && host != "server1") {
    return Error(platform::kErrorInternetNameNotResolved), 0;
  }
  auto it = users.find(user);
  if (it == users.end() || it->second != password) {
    return Error(platform::kErrorInternetExtendedError, "530 Login incorrect.\r\n"), 0;
  }
  const InternetHandle h = next_handle++;
  Handle c{Kind::kConnection};
  c.parent = internet;
  handles_[h] = c;
  return h;
}

bool FakeInternet::CloseHandle(InternetHandle handle) {
  if (Enter(Op::kCloseHandle, "Close " + Hex(handle))) return false;
  if (!handles_.count(handle)) return Error(platform::kErrorInvalidHandle);
  Handle& h = handles_[handle];
  if (h.kind == Kind::kFile && h.writing) {
    // The upload is complete when its handle closes.
    nodes[h.path].data = h.ascii ? ToLf(h.data) : h.data;
  }
  CloseTree(handle);
  return true;
}

bool FakeInternet::GetConnectedState(std::uint32_t& flags) {
  if (Enter(Op::kConnectedState, "ConnectedState")) return false;
  flags = connected ? connected_flags : 0;
  return connected;
}

void FakeInternet::SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) {
  connect_timeout_ms = connect_ms;
  read_timeout_ms = read_ms;
}

InternetHandle FakeInternet::FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                                           std::uint32_t) {
  if (Enter(Op::kFindFirst, "FindFirst " + mask)) return 0;
  Handle* c = Ready(connection);
  if (!c) return 0;
  std::vector<FindData> found;
  const std::string pattern = mask.empty() ? "*" : mask;
  if (listing_override_) {
    for (const FindData& d : *listing_override_)
      if (platform::MatchWildcard(d.name, pattern)) found.push_back(d);
  } else {
    const std::string dir = c->cwd;
    for (const auto& [path, node] : nodes) {
      if (path == "/" || Parent(path) != dir) continue;
      if (platform::MatchWildcard(Name(path), pattern)) found.push_back(Describe(path, node));
    }
  }
  if (found.empty()) return Error(platform::kErrorNoMoreFiles), 0;
  data = found.front();
  const InternetHandle h = next_handle++;
  Handle s{Kind::kFind};
  s.parent = connection;
  s.found = std::move(found);
  s.next = 1;
  handles_[h] = std::move(s);
  return h;
}

bool FakeInternet::FindNextFile(InternetHandle find, FindData& data) {
  if (Enter(Op::kFindNext, "FindNext")) return false;
  Handle* s = Find(find, Kind::kFind);
  if (!s) return false;
  if (s->next >= s->found.size()) return Error(platform::kErrorNoMoreFiles);
  data = s->found[s->next++];
  return true;
}

bool FakeInternet::GetCurrentDirectory(InternetHandle connection, std::string& directory, std::uint32_t buffer_length) {
  if (Enter(Op::kGetCurrentDirectory, "Pwd")) return false;
  Handle* c = Ready(connection);
  if (!c) return false;
  if (c->cwd.size() + 1 > buffer_length) return Error(platform::kErrorInsufficientBuffer);
  directory = c->cwd;
  return true;
}

bool FakeInternet::SetCurrentDirectory(InternetHandle connection, const std::string& directory) {
  if (Enter(Op::kSetCurrentDirectory, "Cwd " + directory)) return false;
  Handle* c = Ready(connection);
  if (!c) return false;
  const std::string path = Resolve(*c, directory);
  if (directory.empty() || !IsDirectory(path))
    return Error(platform::kErrorInternetExtendedError, NoSuchFile(directory));
  c->cwd = path;
  return true;
}

bool FakeInternet::CreateDirectory(InternetHandle connection, const std::string& directory) {
  if (Enter(Op::kCreateDirectory, "Mkd " + directory)) return false;
  Handle* c = Ready(connection);
  if (!c) return false;
  const std::string path = Resolve(*c, directory);
  if (nodes.count(path) || !IsDirectory(Parent(path))) {
    return Error(platform::kErrorInternetExtendedError, "550 " + directory + ": Can't create directory.\r\n");
  }
  nodes[path].directory = true;
  return true;
}

bool FakeInternet::RemoveDirectory(InternetHandle connection, const std::string& directory) {
  if (Enter(Op::kRemoveDirectory, "Rmd " + directory)) return false;
  Handle* c = Ready(connection);
  if (!c) return false;
  const std::string path = Resolve(*c, directory);
  bool empty = true;
  for (const auto& [p, n] : nodes)
    if (p != "/" && Parent(p) == path) empty = false;
  if (!IsDirectory(path) || path == "/" || !empty)
    return Error(platform::kErrorInternetExtendedError, NoSuchFile(directory));
  nodes.erase(path);
  return true;
}

bool FakeInternet::DeleteFile(InternetHandle connection, const std::string& name) {
  if (Enter(Op::kDeleteFile, "Dele " + name)) return false;
  Handle* c = Ready(connection);
  if (!c) return false;
  const std::string path = Resolve(*c, name);
  if (name.empty() || !IsFile(path)) return Error(platform::kErrorInternetExtendedError, NoSuchFile(name));
  nodes.erase(path);
  return true;
}

bool FakeInternet::GetFile(InternetHandle connection, const std::string& remote, const std::string& local,
                           bool fail_if_exists, std::uint32_t, std::uint32_t flags) {
  if (Enter(Op::kGetFile, "GetFile " + remote + " " + local + " " + Hex(flags))) return false;
  last_transfer_flags = flags;
  Handle* c = Ready(connection);
  if (!c) return false;
  const std::string path = Resolve(*c, remote);
  if (remote.empty() || !IsFile(path)) return Error(platform::kErrorInternetExtendedError, NoSuchFile(remote));
  if (!local_) return Error(platform::kErrorAccessDenied);
  platform::FileError error;
  std::uint64_t length = 0;
  if (fail_if_exists && local_->Length(local, length, error)) return Error(80);
  const bool ascii = (flags & 3) == platform::kFtpTransferTypeAscii;
  const std::string& data = nodes[path].data;
  if (!local_->WriteAll(local, ascii ? ToCrLf(data) : data, error)) return Error(platform::kErrorAccessDenied);
  return true;
}

bool FakeInternet::PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
                           std::uint32_t flags) {
  if (Enter(Op::kPutFile, "PutFile " + local + " " + remote + " " + Hex(flags))) return false;
  last_transfer_flags = flags;
  Handle* c = Ready(connection);
  if (!c) return false;
  std::string data;
  platform::FileError error;
  if (!local_ || !local_->ReadAll(local, data, error)) return Error(platform::kErrorFileNotFound);
  const std::string path = Resolve(*c, remote);
  if (remote.empty() || IsDirectory(path) || !IsDirectory(Parent(path))) {
    return Error(platform::kErrorInternetExtendedError, "553 Could not create file.\r\n");
  }
  const bool ascii = (flags & 3) == platform::kFtpTransferTypeAscii;
  RemoteNode& n = nodes[path];
  n.directory = false;
  n.data = ascii ? ToLf(data) : data;
  return true;
}

InternetHandle FakeInternet::OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                                      std::uint32_t flags) {
  if (Enter(Op::kOpenFile, "OpenFile " + name + " " + Hex(access) + " " + Hex(flags))) return 0;
  last_open_flags = flags;
  last_open_access = access;
  Handle* c = Ready(connection);
  if (!c) return 0;
  const std::string path = Resolve(*c, name);
  Handle f{Kind::kFile};
  f.parent = connection;
  f.path = path;
  f.ascii = (flags & 3) == platform::kFtpTransferTypeAscii;
  if (access == platform::kGenericWrite) {
    if (name.empty() || IsDirectory(path) || !IsDirectory(Parent(path))) {
      return Error(platform::kErrorInternetExtendedError, "553 Could not create file.\r\n"), 0;
    }
    f.writing = true;
    nodes[path] = RemoteNode{};  // STOR creates the file at once
  } else {
    if (name.empty() || !IsFile(path)) return Error(platform::kErrorInternetExtendedError, NoSuchFile(name)), 0;
    const RemoteNode& node = nodes[path];
    if (node.generated) {
      f.generated = true;
      f.generated_left = node.listed_size.value_or(0);
    } else {
      f.data = f.ascii ? ToCrLf(node.data) : node.data;
    }
  }
  const InternetHandle h = next_handle++;
  handles_[h] = std::move(f);
  return h;
}

bool FakeInternet::ReadFile(InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) {
  read = 0;
  if (Enter(Op::kReadFile, "Read " + std::to_string(to_read))) return false;
  Handle* f = Find(file, Kind::kFile);
  if (!f || f->writing) return Error(platform::kErrorInvalidHandle);
  if (f->generated) {
    std::uint64_t n = std::min<std::uint64_t>(to_read, f->generated_left);
    if (read_limit) n = std::min<std::uint64_t>(n, read_limit);
    std::memset(buffer, 0, static_cast<std::size_t>(n));
    f->generated_left -= n;
    read = static_cast<std::uint32_t>(n);
    return true;
  }
  std::size_t n = std::min<std::size_t>(to_read, f->data.size() - std::min(f->next, f->data.size()));
  if (read_limit) n = std::min<std::size_t>(n, read_limit);
  if (n) std::memcpy(buffer, f->data.data() + f->next, n);
  f->next += n;
  read = static_cast<std::uint32_t>(n);
  return true;
}

bool FakeInternet::WriteFile(InternetHandle file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) {
  written = 0;
  if (Enter(Op::kWriteFile, "Write " + std::to_string(to_write))) return false;
  Handle* f = Find(file, Kind::kFile);
  if (!f || !f->writing) return Error(platform::kErrorInvalidHandle);
  f->data.append(static_cast<const char*>(buffer), to_write);
  written = to_write;
  return true;
}

}  // namespace tolva::fakes
