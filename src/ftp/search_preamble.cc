#include "ftp/search_preamble.h"

#include "ftp/error_recorder.h"

namespace tolva::ftp {

std::optional<std::string> RunPreamble(Tolva2011Register& component, detail::ComponentState& state,
                                       const std::string& mask, const PreambleTexts& texts,
                                       std::string& error_message) {
  SessionState& f = state.ftp;
  if (texts.resets_stop) {
    f.stop_requested = kFalse;
    f.stop_done = kFalse;
  }
  ClearErrors(f);
  std::string m = Trim(mask);
  if (m.empty()) {
    error_message = RecordError(f, component.ErrorMessageNotDefined(texts.what), "");
    return std::nullopt;
  }
  std::string msg;
  if (!IsTrue(component.FTPSessionTest(msg))) {
    error_message = RecordError(f, std::string(texts.title) + " [" + m + "]", msg);
    return std::nullopt;
  }
  if (texts.clears_message_on_pass) error_message.clear();
  return m;
}

}  // namespace tolva::ftp
