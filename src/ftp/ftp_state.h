// The component's one FTP session: handles, parameters, error texts, stop flags.
#ifndef TOLVA_SRC_FTP_FTP_STATE_H_
#define TOLVA_SRC_FTP_FTP_STATE_H_

#include <string>

#include "tolva/host_types.h"

namespace tolva::ftp {

struct SessionState {
  Long session_handle = 0;
  Long connect_handle = 0;
  std::string last_error_text;
  std::string short_error_text;
  Boolean stop_requested = kFalse;
  Boolean stop_done = kFalse;
  Long file_handle = 0;
  Long find_handle = 0;
  std::string host;
  std::string user_id;
  std::string password;
  Boolean last_auto_ascii = kFalse;  // type the last successful FTPSessionGetAuto settled on
  Long connect_timeout_ms = 60000;
  Long read_timeout_ms = 60000;
};

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_FTP_STATE_H_
