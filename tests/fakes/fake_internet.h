// A scriptable in-memory FTP library for unit tests: a remote tree of
// directories and files, users, per-connection current directories, open
// handles that are counted, failures to inject per operation, and a log of
// every call. Local files of whole-file transfers go through the given
// FileSystem (usually FakeFileSystem), so the component sees what arrived.
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
  enum class Op {
    kOpen,
    kConnect,
    kCloseHandle,
    kFindFirst,
    kFindNext,
    kGetCurrentDirectory,
    kSetCurrentDirectory,
    kCreateDirectory,
    kRemoveDirectory,
    kDeleteFile,
    kGetFile,
    kPutFile,
    kOpenFile,
    kReadFile,
    kWriteFile,
    kConnectedState,
  };
  struct RemoteNode {
    bool directory = false;
    std::string data;
    std::optional<std::uint64_t> listed_size;  // size the listing reports, when not data.size()
    // Reads of a file opened for reading yield listed_size bytes of zeros
    // without storing them: files beyond what memory would hold.
    bool generated = false;
    platform::FindTime time{true, 2011, 1, 2, 3, 4, 5};
  };

  explicit FakeInternet(std::shared_ptr<platform::FileSystem> local = nullptr);

  // ---- Set-up ----
  // Adds a remote file (and its parent directories); paths are absolute.
  void AddFile(const std::string& path, const std::string& data, platform::FindTime time = {true, 2011, 1, 2, 3, 4, 5});
  void AddDirectory(const std::string& path);
  // Replaces every listing with these entries (names as a hostile server
  // sends them); the mask still applies.
  void SetListing(std::vector<platform::FindData> entries) { listing_override_ = std::move(entries); }
  // Makes the next calls of `op` fail with `code` (and, for 12003, the
  // server's `response`): after `skip` successful calls, `times` times
  // (-1: for ever).
  void Fail(Op op, std::uint32_t code, const std::string& response = "", int skip = 0, int times = 1);
  // Makes `op` throw, as a library whose entry point is missing would.
  void Throw(Op op) { throwing_[op] = true; }
  // Called at the start of every operation (after counting it).
  std::function<void(Op)> on_call;

  std::map<std::string, std::string> users{{"user", "secret"}};
  bool connected = true;
  std::uint32_t connected_flags = platform::kConnectionLan;
  // Handles are numbered from here; a base with the top bit set checks that
  // the component keeps them intact through its signed Longs.
  std::uint32_t next_handle = 0x100;
  // At most this many bytes per ReadFile (0: as many as asked), to play a
  // library that returns short reads.
  std::uint32_t read_limit = 0;

  // ---- Inspection ----
  int Count(Op op) const;
  int OpenHandleCount() const { return static_cast<int>(handles_.size()); }
  bool IsFile(const std::string& path) const;
  bool IsDirectory(const std::string& path) const;
  std::string Contents(const std::string& path) const;
  std::vector<std::string> log;  // one line per call: "Connect host user", "GetFile a.txt /l 80000002", ...
  std::string last_agent;
  std::string last_host;
  std::uint16_t last_port = 0;
  std::uint32_t last_connect_flags = 0;
  std::uint32_t last_open_flags = 0;  // flags of the last OpenFile
  std::uint32_t last_open_access = 0;
  std::uint32_t last_transfer_flags = 0;  // flags of the last GetFile / PutFile
  std::uint32_t connect_timeout_ms = 0, read_timeout_ms = 0;
  std::map<std::string, RemoteNode> nodes;  // keyed by absolute path; "/" is the root

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
  enum class Kind { kInternet, kConnection, kFind, kFile };
  struct Handle {
    explicit Handle(Kind k = Kind::kInternet) : kind(k) {}
    Kind kind;
    platform::InternetHandle parent = 0;
    std::string cwd = "/";                  // connections
    std::vector<platform::FindData> found;  // searches
    std::size_t next = 0;                   // searches: next entry; files: read position
    std::string path;                       // files
    std::string data;                       // files opened for reading (as served)
    std::uint64_t generated_left = 0;       // files of generated content: bytes still to come
    bool generated = false;
    bool writing = false;
    bool ascii = false;
  };
  struct Failure {
    int skip;
    int times;
    std::uint32_t code;
    std::string response;
  };

  // Counts, logs and applies an injected failure; true when the call must fail.
  bool Enter(Op op, const std::string& line);
  bool Error(std::uint32_t code, const std::string& response = "");
  Handle* Find(platform::InternetHandle h, Kind kind);
  // The connection, or nothing (error set) when it is unknown or busy.
  Handle* Ready(platform::InternetHandle connection);
  std::string Resolve(const Handle& connection, const std::string& path) const;
  static std::string Parent(const std::string& path);
  static std::string Name(const std::string& path);
  platform::FindData Describe(const std::string& path, const RemoteNode& node) const;
  void CloseTree(platform::InternetHandle h);

  std::map<platform::InternetHandle, Handle> handles_;
  std::map<Op, std::deque<Failure>> failures_;
  std::map<Op, bool> throwing_;
  std::map<Op, int> counts_;
  std::optional<std::vector<platform::FindData>> listing_override_;
  std::shared_ptr<platform::FileSystem> local_;
  std::uint32_t last_error_ = 0;
  std::string last_response_;
};

}  // namespace tolva::fakes

#endif  // TOLVA_TESTS_FAKES_FAKE_INTERNET_H_
