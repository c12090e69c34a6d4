// The search loop shared by the finding members: lists the current remote
// directory of the session with a mask, hands each entry to the member,
// lets the host process its events between entries and obeys a stop.
#ifndef TOLVA_SRC_FTP_REMOTE_SEARCH_H_
#define TOLVA_SRC_FTP_REMOTE_SEARCH_H_

#include <functional>
#include <optional>
#include <string>

#include "component/component_state.h"
#include "ftp/entry_decoder.h"
#include "tolva/tolva2011register.h"

namespace tolva::ftp {

class RemoteSearch {
 public:
  // Where the yield to the host falls relative to handing over an entry.
  enum class Order {
    kReportThenYield,  // entry, yield, stop test: the counting and listing members
    kYieldThenReport,  // yield, stop test, entry: the finding event, so a stop
                       // before the first entry reports nothing
  };
  // Called per entry; returning false ends the search at once (the host's Cancel).
  using OnEntry = std::function<bool(const DecodedEntry& entry, const platform::FindData& raw)>;

  RemoteSearch(Tolva2011Register& component, detail::ComponentState& state) noexcept
      : component_(component), state_(state) {}

  // Runs the search. The search handle lives in the session's FindHandle
  // and is closed before returning; StopDone receives StopRequested. An
  // error of the library (other than "nothing more matched") is recorded
  // with `tag` and copied into `error_message`. Returns false only when the
  // first call failed that way. A search that only gathers names for a
  // later step may pass `records_errors` false: it then just ends early.
  bool Run(const std::string& mask, const std::string& tag, Order order, std::string& error_message,
           const OnEntry& on_entry, bool records_errors = true);

  // The local date now, for the year correction; empty without system information.
  static std::optional<platform::DateTime> Today(detail::ComponentState& state);

 private:
  void RecordSearchError(const std::string& tag, std::string& error_message);

  bool records_errors_ = true;

  Tolva2011Register& component_;
  detail::ComponentState& state_;
};

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_REMOTE_SEARCH_H_
