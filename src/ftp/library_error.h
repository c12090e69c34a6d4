// The FTP library's last error number, as a Long; 0 when there is no library.
#ifndef TOLVA_SRC_FTP_LIBRARY_ERROR_H_
#define TOLVA_SRC_FTP_LIBRARY_ERROR_H_

#include "component/component_state.h"
#include "ftp/handle_convert.h"

namespace tolva::ftp {

inline Long LastLibraryError(const detail::ComponentState& s) noexcept {
  try {
    return s.services.internet ? ErrorNumber(s.services.internet->LastError()) : 0;
  } catch (...) {
    return 0;
  }
}

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_LIBRARY_ERROR_H_
