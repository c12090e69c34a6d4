// State of the text-file family: the last read error of ReadFile and the
// cancel flag of the long readers.
#ifndef TOLVA_SRC_TEXTDATA_TEXTDATA_STATE_H_
#define TOLVA_SRC_TEXTDATA_TEXTDATA_STATE_H_

#include <string>

#include "tolva/host_types.h"

namespace tolva::textdata {

struct TextDataState {
  std::string last_read_error;
  Boolean cancel = kFalse;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_TEXTDATA_STATE_H_
