// Fuzz target of the FTP reply reader: the input is what a server sends on
// the control connection; replies are read from it one after another until
// it ends or a reply is refused, as a session would.
#include <algorithm>
#include <string>

#include "fuzz/fuzz_target.h"
#include "platform/linux/ftp/ftp_reply_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tolva::platform::posix::ftp;
  std::size_t pos = 0;
  auto next = [&] { return pos < size ? static_cast<int>(data[pos++]) : -1; };
  while (pos < size) {
    const std::size_t start = pos;
    FtpReply reply;
    try {
      reply = ReadFtpReply(next);
    } catch (const FtpFailure& failure) {
      Check(failure.error() == tolva::platform::kErrorInternetConnectionAborted, "a refused reply is 12030");
      return 0;
    }
    Check(reply.code >= 100 && reply.code <= 599 && reply.text.compare(0, 3, std::to_string(reply.code)) == 0,
          "the code is 100..599 and starts the text");
    Check(data[pos - 1] == '\n', "a reply ends at a line end");
    // The text is the lines read, each without its line end, joined by CR LF.
    std::string expected;
    for (std::size_t b = start, e; b < pos; b = e + 1) {
      e = static_cast<std::size_t>(std::find(data + b, data + pos, '\n') - data);
      if (b > start) expected += "\r\n";
      expected.append(reinterpret_cast<const char*>(data + b), e - b - (e > b && data[e - 1] == '\r'));
    }
    Check(reply.text == expected, "the text is the lines read");
    const std::size_t last = reply.text.rfind("\r\n");
    const std::string last_line = last == std::string::npos ? reply.text : reply.text.substr(last + 2);
    const bool multi = reply.text.size() > 3 && reply.text[3] == '-';
    Check(multi || last == std::string::npos, "only a reply opened with code- has several lines");
    Check(!multi || (last != std::string::npos && last_line.compare(0, 3, reply.text, 0, 3) == 0 &&
                     (last_line.size() == 3 || last_line[3] == ' ')),
          "a multi-line reply ends at a line repeating its code");
  }
  return 0;
}
