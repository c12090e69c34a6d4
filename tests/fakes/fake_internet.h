// A scriptable in-memory FTP library for unit tests: a remote tree, one
// user, per-connection current directories, counted handles, failures to
// inject per call, and a log of every call. Whole-file transfers read and
// write their local side through the given FileSystem.
//
// Like a real connection, one with a search or a file open on it refuses
// other commands (kErrorFtpTransferInProgress): a member that forgets to
// close its search is caught.
#ifndef TOLVA_TESTS_FAKES_FAKE_INTERNET_H_
#define TOLVA_TESTS_FAKES_FAKE_INTERNET_H_

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tolva/platform/file_system.h"
#include "tolva/platform/internet.h"

namespace tolva::fakes {

class FakeInternet : public platform::InternetLibrary {
 public:
  struct RemoteNode {
    bool directory = false;
    std::string data;
    // A file this many zero bytes long, listed and read but never stored:
    // sizes beyond what memory would hold.
    std::uint64_t zeros = 0;
    platform::FindTime time{true, 2011, 1, 2, 3, 4, 5};
  };
  // The code that makes a failing call throw, as a library whose entry point is missing would.
  static constexpr std::uint32_t kThrow = 0xFFFFFFFF;

  explicit FakeInternet(std::shared_ptr<platform::FileSystem> local = nullptr) : local_(std::move(local)) {}

  // Adds a remote file or directory and its missing parents; paths are absolute.
  void Add(const std::string& path, std::optional<std::string> data = std::nullopt,
           platform::FindTime time = {true, 2011, 1, 2, 3, 4, 5});
  // Makes the next call whose log line starts with `verb` ("GetFile", "Read", ...) fail
  // with `code` (and, for 12003, the server's `response`), after `skip` calls that succeed.
  void Fail(const std::string& verb, std::uint32_t code, const std::string& response = "", int skip = 0) {
    failures_[verb].push_back({skip, code, response});
  }
  int Count(const std::string& verb) const;
  int OpenHandleCount() const { return static_cast<int>(handles_.size()); }

  std::map<std::string, RemoteNode> nodes{{"/", {true, ""}}};  // keyed by absolute path
  // Replaces every listing with these entries (names as a hostile server sends them).
  std::optional<std::vector<platform::FindData>> listing;
  std::vector<std::string> log;  // "Connect server1 user 0 8000000", "GetFile a.txt /l 80000002", ...
  std::function<void(const std::string& verb)> on_call;  // at the start of every call
  std::string password = "secret";                       // of the only user, "user"
  bool connected = true;
  // Handles are numbered from here; a base with the top bit set checks that
  // the component keeps them intact through its signed Longs.
  std::uint32_t next_handle = 0x100;
  std::uint32_t read_limit = 0;  // at most this many bytes per ReadFile (0: as asked)

  // ---- platform::InternetLibrary ----
  platform::InternetHandle Open(const std::string& agent, std::uint32_t access_type, std::uint32_t flags) override;
  platform::InternetHandle Connect(platform::InternetHandle internet, const std::string& host, std::uint16_t port,
                                   const std::string& user, const std::string& password, std::uint32_t service,
                                   std::uint32_t flags) override;
  bool CloseHandle(platform::InternetHandle handle) override;
  std::uint32_t LastError() const override { return last_error_; }
  std::string LastResponseInfo() const override { return last_response_; }
  bool GetConnectedState(std::uint32_t& flags) override;
  void SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) override;
  platform::InternetHandle FindFirstFile(platform::InternetHandle connection, const std::string& mask,
                                         platform::FindData& data, std::uint32_t flags) override;
  bool FindNextFile(platform::InternetHandle find, platform::FindData& data) override;
  bool GetCurrentDirectory(platform::InternetHandle connection, std::string& directory,
                           std::uint32_t buffer_length) override;
  bool SetCurrentDirectory(platform::InternetHandle connection, const std::string& directory) override;
  bool CreateDirectory(platform::InternetHandle connection, const std::string& directory) override;
  bool RemoveDirectory(platform::InternetHandle connection, const std::string& directory) override;
  bool DeleteFile(platform::InternetHandle connection, const std::string& name) override;
  bool GetFile(platform::InternetHandle connection, const std::string& remote, const std::string& local,
               bool fail_if_exists, std::uint32_t attributes, std::uint32_t flags) override;
  bool PutFile(platform::InternetHandle connection, const std::string& local, const std::string& remote,
               std::uint32_t flags) override;
  platform::InternetHandle OpenFile(platform::InternetHandle connection, const std::string& name, std::uint32_t access,
                                    std::uint32_t flags) override;
  bool ReadFile(platform::InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) override;
  bool WriteFile(platform::InternetHandle file, const void* buffer, std::uint32_t to_write,
                 std::uint32_t& written) override;

 private:
  struct Handle {
    platform::InternetHandle parent = 0;  // 0: an Internet handle
    bool connection = false;
    std::string cwd = "/";                  // connections
    std::vector<platform::FindData> found;  // searches
    std::size_t next = 0;                   // searches: next entry; files: read position
    std::string path, data;                 // files: remote path, bytes read or written
    std::uint64_t zeros = 0;                // files of zeros: bytes still to come
    bool writing = false;
  };
  struct Failure {
    int skip;
    std::uint32_t code;
    std::string response;
  };

  // Logs the call and applies an injected failure; true when the call must fail.
  bool Enter(const std::string& verb, const std::string& args);
  // Enter, then the connection; nothing (error set) when the call fails, or the
  // connection is unknown or busy. `path` becomes `arg` resolved against its directory.
  Handle* Begin(const std::string& verb, platform::InternetHandle connection, const std::string& arg, std::string& path,
                const std::string& more = "");
  bool Error(std::uint32_t code, const std::string& response = "");
  bool Is(const std::string& path, bool directory) const;
  std::uint32_t NewHandle(Handle h);
  void CloseTree(platform::InternetHandle h);

  std::map<platform::InternetHandle, Handle> handles_;
  std::map<std::string, std::deque<Failure>> failures_;
  std::shared_ptr<platform::FileSystem> local_;
  std::uint32_t last_error_ = 0;
  std::string last_response_;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_INTERNET_H_
