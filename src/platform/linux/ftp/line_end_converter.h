// The local side of an ASCII transfer uses CR LF line ends whatever the
// server does with TYPE A: a bare LF becomes CR LF, and CR CR LF (a server
// that added a CR to lines that had one) becomes CR LF. Bytes arrive in
// blocks, so the converter keeps the CRs it has not placed yet.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_LINE_END_CONVERTER_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_LINE_END_CONVERTER_H_

#include <cstddef>
#include <string>

namespace tolva::platform::posix::ftp {

class LineEndConverter {
 public:
  // Appends the converted form of `data` to `out`.
  void Convert(const char* data, std::size_t size, std::string& out);
  // The CRs still held back at the end of the data.
  void Finish(std::string& out);

 private:
  std::size_t pending_cr_ = 0;
};

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_LINE_END_CONVERTER_H_
