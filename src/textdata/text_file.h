// Whole text files: helpers the text readers share.
#ifndef TOLVA_SRC_TEXTDATA_TEXT_FILE_H_
#define TOLVA_SRC_TEXTDATA_TEXT_FILE_H_

#include "tolva/host_types.h"

namespace tolva::textdata {

// Records between two progress events. The host may leave ReadWriteIncrement
// at 0 or set it below; a modulo by that is meaningless, so it counts as 1.
constexpr Long ProgressInterval(Long read_write_increment) noexcept {
  return read_write_increment < 1 ? 1 : read_write_increment;
}

// True when a progress event is due after `records` records.
constexpr bool ProgressDue(Long records, Long read_write_increment) noexcept {
  return records % ProgressInterval(read_write_increment) == 0;
}

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_TEXT_FILE_H_
