// The Internet library on Linux: FTP over POCO's client session.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_POCO_INTERNET_LIBRARY_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_POCO_INTERNET_LIBRARY_H_

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/ftp/handle_table.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

class PocoInternetLibrary final : public InternetLibrary {
 public:
  PocoInternetLibrary() = default;
  PocoInternetLibrary(const PocoInternetLibrary&) = delete;
  PocoInternetLibrary& operator=(const PocoInternetLibrary&) = delete;
  ~PocoInternetLibrary() override;

  InternetHandle Open(const std::string& agent, std::uint32_t access_type, std::uint32_t flags) override;
  InternetHandle Connect(InternetHandle internet, const std::string& host, std::uint16_t port, const std::string& user,
                         const std::string& password, std::uint32_t service, std::uint32_t flags) override;
  bool CloseHandle(InternetHandle handle) override;
  std::uint32_t LastError() const override;
  std::string LastResponseInfo() const override;
  bool GetConnectedState(std::uint32_t& flags) override;
  void SetTimeouts(std::uint32_t connect_ms, std::uint32_t read_ms) override;
  void SetSecurity(FtpSecurity security, const std::string& certificate_file) override;
  InternetHandle FindFirstFile(InternetHandle connection, const std::string& mask, FindData& data,
                               std::uint32_t flags) override;
  bool FindNextFile(InternetHandle find, FindData& data) override;
  bool GetCurrentDirectory(InternetHandle connection, std::string& directory, std::uint32_t buffer_length) override;
  bool SetCurrentDirectory(InternetHandle connection, const std::string& directory) override;
  bool CreateDirectory(InternetHandle connection, const std::string& directory) override;
  bool RemoveDirectory(InternetHandle connection, const std::string& directory) override;
  bool DeleteFile(InternetHandle connection, const std::string& name) override;
  bool GetFile(InternetHandle connection, const std::string& remote, const std::string& local, bool fail_if_exists,
               std::uint32_t attributes, std::uint32_t flags) override;
  bool PutFile(InternetHandle connection, const std::string& local, const std::string& remote,
               std::uint32_t flags) override;
  InternetHandle OpenFile(InternetHandle connection, const std::string& name, std::uint32_t access,
                          std::uint32_t flags) override;
  bool ReadFile(InternetHandle file, void* buffer, std::uint32_t to_read, std::uint32_t& read) override;
  bool WriteFile(InternetHandle file, const void* buffer, std::uint32_t to_write, std::uint32_t& written) override;

  // Open handles (for leak tests).
  std::size_t OpenHandleCount() const { return handles_.Size(); }

 private:
  bool SimpleCommand(InternetHandle connection, const char* verb, const std::string& arg);

  HandleTable handles_;
  std::atomic<std::uint32_t> connect_ms_{60000};
  std::atomic<std::uint32_t> read_ms_{60000};
  std::mutex security_mutex_;
  FtpSecurity security_ = FtpSecurity::kPlain;
  std::string certificate_file_;
};

}  // namespace tolva::platform::posix::ftp

namespace tolva::platform::posix {

// The service of this folder, as linux_services.cc assembles it.
std::shared_ptr<InternetLibrary> NewInternetLibrary();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_POCO_INTERNET_LIBRARY_H_
