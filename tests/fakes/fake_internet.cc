#include "fakes/fake_internet.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "files/wildcard.h"

namespace tolva::fakes {

using platform::FindData;
using platform::InternetHandle;

namespace {

std::string Hex(std::uint32_t v) {
  char b[16];
  std::snprintf(b, sizeof b, "%x", v);
  return b;
}

std::string Parent(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string NoSuchFile(const std::string& name) {
  return "550 " + name + ": No such file or directory.\r\n";
}

constexpr std::uint32_t kExtended = platform::kErrorInternetExtendedError;
constexpr const char* kCannotCreate = "553 Could not create file.\r\n";

}  // namespace

void FakeInternet::Add(const std::string& path, std::optional<std::string> data, platform::FindTime time) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    nodes[path.substr(0, slash)].directory = true;
  nodes[path] = RemoteNode{!data, data.value_or(""), 0, time};
}

int FakeInternet::Count(const std::string& verb) const {
  return static_cast<int>(
      std::count_if(log.begin(), log.end(), [&](const std::string& l) { return l.rfind(verb + " ", 0) == 0; }));
}

bool FakeInternet::Enter(const std::string& verb, const std::string& args) {
  log.push_back(verb + " " + args);
  if (on_call) on_call(verb);
  auto& queue = failures_[verb];
  if (queue.empty() || queue.front().skip-- > 0) return false;
  const Failure f = queue.front();
  queue.pop_front();
  if (f.code == kThrow) throw std::runtime_error("entry point not found");
  return !Error(f.code, f.response);
}

FakeInternet::Handle* FakeInternet::Begin(const std::string& verb, InternetHandle connection, const std::string& arg,
                                          std::string& path, const std::string& more) {
  if (Enter(verb, arg + more)) return nullptr;
  auto it = handles_.find(connection);
  if (it == handles_.end() || !it->second.connection) return Error(platform::kErrorInvalidHandle), nullptr;
  for (const auto& [h, child] : handles_)
    if (child.parent == connection) return Error(platform::kErrorFtpTransferInProgress), nullptr;
  path = !arg.empty() && arg[0] == '/' ? arg : it->second.cwd + "/" + arg;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  if (path.rfind("//", 0) == 0) path.erase(0, 1);
  return &it->second;
}

bool FakeInternet::Error(std::uint32_t code, const std::string& response) {
  last_error_ = code;
  if (code == kExtended) last_response_ = response;
  return false;
}

bool FakeInternet::Is(const std::string& path, bool directory) const {
  auto it = nodes.find(path);
  return it != nodes.end() && it->second.directory == directory;
}

std::uint32_t FakeInternet::NewHandle(Handle h) {
  handles_[next_handle] = std::move(h);
  return next_handle++;
}

InternetHandle FakeInternet::Open(const std::string& agent, std::uint32_t, std::uint32_t) {
  return Enter("Open", agent) ? 0 : NewHandle({});
}

InternetHandle FakeInternet::Connect(InternetHandle internet, const std::string& host, std::uint16_t port,
                                     const std::string& user, const std::string& password_in, std::uint32_t,
                                     std::uint32_t flags) {
  if (Enter("Connect", host + " " + user + " " + std::to_string(port) + " " + Hex(flags))) return 0;
  if (!handles_.count(internet)) return Error(platform::kErrorInvalidHandle), 0;
  if (host != "server1") return Error(platform::kErrorInternetNameNotResolved), 0;
  if (user != "user" || password_in != password) return Error(kExtended, "530 Login incorrect.\r\n"), 0;
  Handle c;
  c.parent = internet;
  c.connection = true;
  return NewHandle(c);
}

bool FakeInternet::CloseHandle(InternetHandle handle) {
  if (Enter("Close", Hex(handle))) return false;
  auto it = handles_.find(handle);
  if (it == handles_.end()) return Error(platform::kErrorInvalidHandle);
  // An upload is complete when its handle closes.
  if (it->second.writing) nodes[it->second.path] = RemoteNode{false, it->second.data};
  CloseTree(handle);
  return true;
}

void FakeInternet::CloseTree(InternetHandle h) {
  std::vector<InternetHandle> children;
  for (const auto& [k, v] : handles_)
    if (v.parent == h) children.push_back(k);
  for (InternetHandle child : children) CloseTree(child);
  handles_.erase(h);
}

bool FakeInternet::GetConnectedState(std::uint32_t& flags) {
  flags = connected ? platform::kConnectionLan : 0;
  return connected;
}

void FakeInternet::SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) {
  log.push_back("Timeouts " + std::to_string(connect_ms) + " " + std::to_string(read_ms));
}

InternetHandle FakeInternet::FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                                           std::uint32_t) {
  std::string dir;
  Handle* c = Begin("FindFirst", connection, "", dir, mask);
  if (!c) return 0;
  Handle s;
  s.parent = connection;
  std::vector<FindData> entries = listing.value_or(std::vector<FindData>{});
  for (const auto& [path, node] : nodes) {
    if (listing || path == "/" || Parent(path) != dir) continue;
    FindData d;
    d.attributes = node.directory ? platform::kFileAttributeDirectory : platform::kFileAttributeNormal;
    d.size = node.zeros ? node.zeros : node.data.size();
    d.last_write = node.time;
    d.name = path.substr(path.rfind('/') + 1);
    entries.push_back(d);
  }
  for (const FindData& d : entries)
    if (files::MatchWildcard(d.name, mask)) s.found.push_back(d);
  if (s.found.empty()) return Error(platform::kErrorNoMoreFiles), 0;
  data = s.found.front();
  s.next = 1;
  return NewHandle(std::move(s));
}

bool FakeInternet::FindNextFile(InternetHandle find, FindData& data) {
  if (Enter("FindNext", "")) return false;
  Handle& s = handles_.at(find);
  if (s.next >= s.found.size()) return Error(platform::kErrorNoMoreFiles);
  data = s.found[s.next++];
  return true;
}

bool FakeInternet::GetCurrentDirectory(InternetHandle connection, std::string& directory, std::uint32_t buffer_length) {
  std::string path;
  if (!Begin("Pwd", connection, "", path)) return false;
  if (path.size() + 1 > buffer_length) return Error(platform::kErrorInsufficientBuffer);
  directory = path;
  return true;
}

bool FakeInternet::SetCurrentDirectory(InternetHandle connection, const std::string& directory) {
  std::string path;
  Handle* c = Begin("Cwd", connection, directory, path);
  if (!c) return false;
  if (!Is(path, true)) return Error(kExtended, NoSuchFile(directory));
  c->cwd = path;
  return true;
}

bool FakeInternet::CreateDirectory(InternetHandle connection, const std::string& directory) {
  std::string path;
  if (!Begin("Mkd", connection, directory, path)) return false;
  if (nodes.count(path)) return Error(kExtended, "550 " + directory + ": Can't create directory.\r\n");
  nodes[path].directory = true;
  return true;
}

bool FakeInternet::RemoveDirectory(InternetHandle connection, const std::string& directory) {
  std::string path;
  if (!Begin("Rmd", connection, directory, path)) return false;
  if (!Is(path, true)) return Error(kExtended, NoSuchFile(directory));
  nodes.erase(path);
  return true;
}

bool FakeInternet::DeleteFile(InternetHandle connection, const std::string& name) {
  std::string path;
  if (!Begin("Dele", connection, name, path)) return false;
  if (!Is(path, false)) return Error(kExtended, NoSuchFile(name));
  nodes.erase(path);
  return true;
}

bool FakeInternet::GetFile(InternetHandle connection, const std::string& remote, const std::string& local, bool,
                           std::uint32_t, std::uint32_t flags) {
  std::string path;
  if (!Begin("GetFile", connection, remote, path, " " + local + " " + Hex(flags))) return false;
  if (!Is(path, false)) return Error(kExtended, NoSuchFile(remote));
  platform::FileError error;
  return local_->WriteAll(local, nodes[path].data, error) || Error(platform::kErrorAccessDenied);
}

bool FakeInternet::PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
                           std::uint32_t flags) {
  std::string path, data;
  if (!Begin("PutFile", connection, remote, path, " " + local + " " + Hex(flags))) return false;
  platform::FileError error;
  if (!local_->ReadAll(local, data, error)) return Error(platform::kErrorFileNotFound);
  if (remote.empty() || !Is(Parent(path), true)) return Error(kExtended, kCannotCreate);
  nodes[path] = RemoteNode{false, data};
  return true;
}

InternetHandle FakeInternet::OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                                      std::uint32_t flags) {
  Handle f;
  if (!Begin("OpenFile", connection, name, f.path, " " + Hex(access) + " " + Hex(flags))) return 0;
  f.parent = connection;
  f.writing = access == platform::kGenericWrite;
  if (f.writing && !Is(Parent(f.path), true)) return Error(kExtended, kCannotCreate), 0;
  if (!f.writing && !Is(f.path, false)) return Error(kExtended, NoSuchFile(name)), 0;
  if (!f.writing) f.data = nodes[f.path].data;
  if (!f.writing) f.zeros = nodes[f.path].zeros;
  return NewHandle(std::move(f));
}

bool FakeInternet::ReadFile(InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) {
  read = 0;
  if (Enter("Read", std::to_string(to_read))) return false;
  Handle& f = handles_.at(file);
  std::uint64_t n = std::min<std::uint64_t>(to_read, f.zeros ? f.zeros : f.data.size() - f.next);
  if (read_limit) n = std::min<std::uint64_t>(n, read_limit);
  if (f.zeros) {
    std::memset(buffer, 0, n);
    f.zeros -= n;
  } else if (n) {
    std::memcpy(buffer, f.data.data() + f.next, n);
    f.next += n;
  }
  read = static_cast<std::uint32_t>(n);
  return true;
}

bool FakeInternet::WriteFile(InternetHandle file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) {
  written = 0;
  if (Enter("Write", std::to_string(to_write))) return false;
  handles_.at(file).data.append(static_cast<const char*>(buffer), to_write);
  written = to_write;
  return true;
}

}  // namespace tolva::fakes
