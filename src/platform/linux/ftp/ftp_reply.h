// A server reply and the failures the layer reports as error numbers.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_H_

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tolva::platform::posix::ftp {

struct FtpReply {
  int code = 0;      // 100..599
  std::string text;  // every line of the reply, joined with CR LF
  bool Preliminary() const { return code / 100 == 1; }
  bool Completion() const { return code / 100 == 2; }
  bool Intermediate() const { return code / 100 == 3; }
};

// Thrown inside the layer and turned into LastError() / LastResponseInfo()
// at the interface; never leaves the library.
class FtpFailure : public std::runtime_error {
 public:
  FtpFailure(std::uint32_t error, std::string response = {})
      : std::runtime_error("ftp failure"), error_(error), response_(std::move(response)) {}
  std::uint32_t error() const { return error_; }
  const std::string& response() const { return response_; }

 private:
  std::uint32_t error_;
  std::string response_;
};

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_H_
