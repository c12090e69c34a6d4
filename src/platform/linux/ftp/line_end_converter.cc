#include "platform/linux/ftp/line_end_converter.h"

namespace tolva::platform::posix::ftp {

void LineEndConverter::Convert(const char* data, std::size_t size, std::string& out) {
  for (std::size_t i = 0; i < size; ++i) {
    const char c = data[i];
    if (c == '\r') {
      ++pending_cr_;
    } else if (c == '\n') {
      pending_cr_ = 0;
      out += "\r\n";
    } else {
      if (pending_cr_ != 0) {
        out.append(pending_cr_, '\r');  // a CR not ending a line stays as it is
        pending_cr_ = 0;
      }
      out.push_back(c);
    }
  }
}

void LineEndConverter::Finish(std::string& out) {
  out.append(pending_cr_, '\r');
  pending_cr_ = 0;
}

}  // namespace tolva::platform::posix::ftp
