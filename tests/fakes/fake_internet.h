// A scriptable in-memory FTP library: a remote tree, one user, counted
// handles, injected failures and a log of every call. Like a real
// connection, one with a search or a file open refuses other commands, so a
// member that forgets to close its search is caught.
#ifndef TOLVA_TESTS_FAKES_FAKE_INTERNET_H_
#define TOLVA_TESTS_FAKES_FAKE_INTERNET_H_

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tolva/platform/file_patterns.h"
#include "tolva/platform/file_system.h"
#include "tolva/platform/internet.h"

namespace tolva::fakes {

class FakeInternet : public platform::InternetLibrary {
  using Id = platform::InternetHandle;
  using Text = const std::string&;

 public:
  struct RemoteNode {
    bool directory = false;
    std::string data;
    platform::FindTime time{true, 2011, 1, 2, 3, 4, 5};
  };
  static constexpr std::uint32_t kThrow = 0xFFFFFFFF;  // the failing call throws, like a missing entry point

  explicit FakeInternet(std::shared_ptr<platform::FileSystem> local) : local_(std::move(local)) {}

  // Adds a remote file (or, without data, a directory) and its missing parents; paths are absolute.
  void Add(Text path, std::optional<std::string> data = std::nullopt,
           platform::FindTime time = {true, 2011, 1, 2, 3, 4, 5}) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
      nodes[path.substr(0, slash)].directory = true;
    nodes[path] = RemoteNode{!data, data.value_or(""), time};
  }
  // Fails the call logged as `verb` after `skip` successes, with `code` and, for 12003, `response`.
  void Fail(Text verb, std::uint32_t code, Text response = "", int skip = 0) {
    failures_[verb].push_back({skip, code, response});
  }
  std::string Calls(Text verb) const {
    std::string out;
    for (Text line : log)
      if (line.rfind(verb + " ", 0) == 0) out += line + ";";
    return out;
  }
  int OpenHandleCount() const { return static_cast<int>(handles_.size()); }

  std::map<std::string, RemoteNode> nodes{{"/", {true, ""}}};  // keyed by absolute path
  // Replaces every listing with these entries (names as a hostile server sends them).
  std::optional<std::vector<platform::FindData>> listing;
  std::vector<std::string> log;
  platform::FtpSecurity security = platform::FtpSecurity::kPlain;
  std::string certificate_file;
  std::string password = "secret";  // of the only user, "user", on the only host, "server1"
  bool connected = true;
  std::uint32_t next_handle = 0x100;  // set the top bit to check handles survive signed Longs

  Id Open(Text agent, std::uint32_t, std::uint32_t) override { return Enter("Open", agent) ? 0 : New({}); }
  Id Connect(Id internet, Text host, std::uint16_t port, Text user, Text password_in, std::uint32_t,
             std::uint32_t flags) override {
    if (Enter("Connect", host + " " + user + " " + std::to_string(port) + " " + Hex(flags))) return 0;
    if (!handles_.count(internet)) return Error(platform::kErrorInvalidHandle), 0;
    if (host != "server1") return Error(platform::kErrorInternetNameNotResolved), 0;
    if (user != "user" || password_in != password) return Error(kExtended, "530 Login incorrect.\r\n"), 0;
    return New({internet, true});
  }
  bool CloseHandle(Id handle) override {
    if (Enter("Close", Hex(handle))) return false;
    auto it = handles_.find(handle);
    if (it == handles_.end()) return Error(platform::kErrorInvalidHandle);
    // An upload is complete when its handle closes.
    if (it->second.writing) nodes[it->second.path] = RemoteNode{false, it->second.data};
    CloseTree(handle);
    return true;
  }
  std::uint32_t LastError() const override { return last_error_; }
  std::string LastResponseInfo() const override { return last_response_; }
  bool GetConnectedState(std::uint32_t& flags) override {
    flags = connected ? platform::kConnectionLan : 0;
    return connected;
  }
  void SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) override {
    log.push_back("Timeouts " + std::to_string(connect_ms) + " " + std::to_string(read_ms));
  }
  void SetSecurity(platform::FtpSecurity mode, Text file) override {
    security = mode;
    certificate_file = file;
  }
  Id FindFirstFile(Id connection, Text mask, platform::FindData& data, std::uint32_t) override {
    std::string dir;
    if (!Begin("FindFirst", connection, "", dir, mask)) return 0;
    Handle s{connection};
    for (const platform::FindData& d : listing ? *listing : List(dir))
      if (platform::MatchWildcard(d.name, mask)) s.found.push_back(d);
    if (s.found.empty()) return Error(platform::kErrorNoMoreFiles), 0;
    data = s.found[s.next++];
    return New(std::move(s));
  }
  bool FindNextFile(Id find, platform::FindData& data) override {
    if (Enter("FindNext", "")) return false;
    Handle& s = handles_.at(find);
    if (s.next >= s.found.size()) return Error(platform::kErrorNoMoreFiles);
    data = s.found[s.next++];
    return true;
  }
  bool GetCurrentDirectory(Id connection, std::string& directory, std::uint32_t) override {
    return Begin("Pwd", connection, "", directory) != nullptr;
  }
  bool SetCurrentDirectory(Id connection, Text directory) override {
    std::string path;
    Handle* c = Begin("Cwd", connection, directory, path);
    if (!c) return false;
    if (!Is(path, true)) return Error(kExtended, NoSuchFile(directory));
    c->cwd = path;
    return true;
  }
  bool CreateDirectory(Id connection, Text directory) override {
    std::string path;
    if (!Begin("Mkd", connection, directory, path)) return false;
    if (nodes.count(path)) return Error(kExtended, "550 " + directory + ": Can't create directory.\r\n");
    return nodes[path].directory = true;
  }
  bool RemoveDirectory(Id connection, Text directory) override { return Remove("Rmd", connection, directory, true); }
  bool DeleteFile(Id connection, Text name) override { return Remove("Dele", connection, name, false); }
  bool GetFile(Id connection, Text remote, Text local, bool, std::uint32_t, std::uint32_t flags) override {
    std::string path;
    platform::FileError error;
    if (!Begin("GetFile", connection, remote, path, " " + local + " " + Hex(flags))) return false;
    if (!Is(path, false)) return Error(kExtended, NoSuchFile(remote));
    return local_->WriteAll(local, nodes[path].data, error) || Error(platform::kErrorAccessDenied);
  }
  bool PutFile(Id connection, Text local, Text remote, std::uint32_t flags) override {
    std::string path, data;
    platform::FileError error;
    if (!Begin("PutFile", connection, remote, path, " " + local + " " + Hex(flags))) return false;
    if (!local_->ReadAll(local, data, error)) return Error(platform::kErrorFileNotFound);
    if (remote.empty() || !Is(Parent(path), true)) return Error(kExtended, kCannotCreate);
    nodes[path] = RemoteNode{false, data};
    return true;
  }
  Id OpenFile(Id connection, Text name, std::uint32_t access, std::uint32_t flags) override {
    Handle f{connection};
    if (!Begin("OpenFile", connection, name, f.path, " " + Hex(access) + " " + Hex(flags))) return 0;
    f.writing = access == platform::kGenericWrite;
    if (f.writing && !Is(Parent(f.path), true)) return Error(kExtended, kCannotCreate), 0;
    if (!f.writing && !Is(f.path, false)) return Error(kExtended, NoSuchFile(name)), 0;
    if (!f.writing) f.data = nodes[f.path].data;
    return New(std::move(f));
  }
  bool ReadFile(Id file, void* buffer, std::uint32_t to_read, std::uint32_t& read) override {
    read = 0;
    if (Enter("Read", std::to_string(to_read))) return false;
    Handle& f = handles_.at(file);
    read = static_cast<std::uint32_t>(std::min<std::size_t>(to_read, f.data.size() - f.next));
    if (read) std::memcpy(buffer, f.data.data() + f.next, read);
    f.next += read;
    return true;
  }
  bool WriteFile(Id file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) override {
    written = 0;
    if (Enter("Write", std::to_string(to_write))) return false;
    handles_.at(file).data.append(static_cast<const char*>(buffer), written = to_write);
    return true;
  }

 private:
  struct Handle {
    Handle(Id parent_handle = 0, bool is_connection = false) : parent(parent_handle), connection(is_connection) {}
    Id parent;  // 0: an Internet handle
    bool connection;
    std::string cwd = "/";                  // connections
    std::vector<platform::FindData> found;  // searches
    std::size_t next = 0;                   // searches: next entry; files: read position
    std::string path, data;                 // files: remote path, bytes read or written
    bool writing = false;
  };
  struct Failure {
    int skip;
    std::uint32_t code;
    std::string response;
  };
  static constexpr std::uint32_t kExtended = platform::kErrorInternetExtendedError;
  static constexpr const char* kCannotCreate = "553 Could not create file.\r\n";

  static std::string Hex(std::uint32_t v) {
    char b[16];
    std::snprintf(b, sizeof b, "%x", v);
    return b;
  }
  static std::string Parent(Text path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
  }
  static std::string NoSuchFile(Text name) { return "550 " + name + ": No such file or directory.\r\n"; }

  // Logs the call and applies an injected failure; true when the call must fail.
  bool Enter(Text verb, Text args) {
    log.push_back(verb + " " + args);
    auto& queue = failures_[verb];
    if (queue.empty() || queue.front().skip-- > 0) return false;
    const Failure f = queue.front();
    queue.pop_front();
    if (f.code == kThrow) throw std::runtime_error("entry point not found");
    return !Error(f.code, f.response);
  }
  // Enter, then the connection; nothing (error set) when the call fails or the connection is
  // unknown or busy. `path` becomes `arg` resolved against the connection's directory.
  Handle* Begin(Text verb, Id connection, Text arg, std::string& path, Text more = "") {
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
  bool Error(std::uint32_t code, Text response = "") {
    last_error_ = code;
    if (code == kExtended) last_response_ = response;
    return false;
  }
  bool Is(Text path, bool directory) const {
    auto it = nodes.find(path);
    return it != nodes.end() && it->second.directory == directory;
  }
  bool Remove(Text verb, Id connection, Text name, bool directory) {
    std::string path;
    if (!Begin(verb, connection, name, path)) return false;
    if (!Is(path, directory) || path == "/") return Error(kExtended, NoSuchFile(name));
    return nodes.erase(path);
  }
  std::vector<platform::FindData> List(Text dir) const {
    std::vector<platform::FindData> out;
    for (const auto& [path, node] : nodes) {
      if (path == "/" || Parent(path) != dir) continue;
      platform::FindData d;
      d.attributes = node.directory ? platform::kFileAttributeDirectory : platform::kFileAttributeNormal;
      d.size = node.data.size();
      d.last_write = node.time;
      d.name = path.substr(path.rfind('/') + 1);
      out.push_back(d);
    }
    return out;
  }
  Id New(Handle h) {
    handles_[next_handle] = std::move(h);
    return next_handle++;
  }
  void CloseTree(Id h) {
    std::vector<Id> children;
    for (const auto& [k, v] : handles_)
      if (v.parent == h) children.push_back(k);
    for (Id child : children) CloseTree(child);
    handles_.erase(h);
  }

  std::map<Id, Handle> handles_;
  std::map<std::string, std::deque<Failure>> failures_;
  std::shared_ptr<platform::FileSystem> local_;
  std::uint32_t last_error_ = 0;
  std::string last_response_;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_INTERNET_H_
