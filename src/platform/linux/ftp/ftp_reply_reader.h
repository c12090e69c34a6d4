// Reads one server reply from a byte source: single-line ("226 Done") or
// multi-line ("211-Features" ... "211 End"), lines ending in LF or CR LF.
// The source is a callable giving the next byte, or a negative value when
// the connection ended, so the reader works the same on any socket and on
// bytes held in memory.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_READER_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_READER_H_

#include <cstddef>
#include <string>

#include "platform/linux/ftp/ftp_reply.h"
#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

// A reply larger than this is not an FTP reply; a hostile server could
// otherwise fill memory one line at a time.
inline constexpr std::size_t kMaxReplyBytes = 4 * 1024 * 1024;
inline constexpr std::size_t kMaxReplyLines = 10000;

// True when `line` starts with a reply code 100..599, stored in `code`.
inline bool ReplyCodeAt(const std::string& line, int& code) {
  if (line.size() < 3) return false;
  int value = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    if (line[i] < '0' || line[i] > '9') return false;
    value = value * 10 + (line[i] - '0');
  }
  code = value;
  return code >= 100 && code <= 599;
}

// Throws FtpFailure(kErrorInternetConnectionAborted) when the source ends
// mid-reply, the first line has no code, or the reply is too large.
template <typename NextByte>
FtpReply ReadFtpReply(NextByte&& next_byte) {
  FtpReply reply;
  std::string line;
  std::size_t total = 0, lines = 0;
  for (;;) {
    line.clear();
    for (;;) {
      const int c = next_byte();
      if (c < 0) throw FtpFailure(kErrorInternetConnectionAborted, reply.text);
      if (c == '\n') break;
      line.push_back(static_cast<char>(c));
      if (++total > kMaxReplyBytes) throw FtpFailure(kErrorInternetConnectionAborted);
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (++lines > kMaxReplyLines) throw FtpFailure(kErrorInternetConnectionAborted);
    if (!reply.text.empty()) reply.text += "\r\n";
    reply.text += line;
    int code = 0;
    const bool coded = ReplyCodeAt(line, code);
    if (lines == 1) {
      if (!coded) throw FtpFailure(kErrorInternetConnectionAborted, reply.text);
      reply.code = code;
      if (line.size() == 3 || line[3] != '-') return reply;
    } else if (coded && code == reply.code && (line.size() == 3 || line[3] == ' ')) {
      return reply;  // the last line of a multi-line reply repeats the code
    }
  }
}

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_FTP_REPLY_READER_H_
