// A local file sent in blocks, with progress events and a stop.
#ifndef TOLVA_SRC_FTP_BUFFERED_PUT_H_
#define TOLVA_SRC_FTP_BUFFERED_PUT_H_

#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

class BufferedPut {
 public:
  BufferedPut(Tolva2011Register& component, detail::ComponentState& state) noexcept
      : component_(component), state_(state) {}
  BufferedPut(const BufferedPut&) = delete;
  BufferedPut& operator=(const BufferedPut&) = delete;

  Boolean Run(const std::string& local_file, const std::string& remote_file, Boolean ascii, std::string& error_message,
              Long buffer_size);

 private:
  Tolva2011Register& component_;
  detail::ComponentState& state_;
};

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_BUFFERED_PUT_H_
