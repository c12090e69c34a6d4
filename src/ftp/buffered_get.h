// A remote file fetched in blocks, with progress events and a stop.
#ifndef TOLVA_SRC_FTP_BUFFERED_GET_H_
#define TOLVA_SRC_FTP_BUFFERED_GET_H_

#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

class BufferedGet {
 public:
  BufferedGet(Tolva2011Register& component, detail::ComponentState& state) noexcept
      : component_(component), state_(state) {}
  BufferedGet(const BufferedGet&) = delete;
  BufferedGet& operator=(const BufferedGet&) = delete;

  Boolean Run(const std::string& remote_file, const std::string& local_file, Boolean ascii, std::string& error_message,
              Long buffer_size);

 private:
  Tolva2011Register& component_;
  detail::ComponentState& state_;
};

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_BUFFERED_GET_H_
