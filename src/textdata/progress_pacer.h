// Progress of the long readers: raises ReadWriteProgress, lets the host
// process its events, and reports whether the host asked to cancel.
#ifndef TOLVA_SRC_TEXTDATA_PROGRESS_PACER_H_
#define TOLVA_SRC_TEXTDATA_PROGRESS_PACER_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "component/component_state.h"
#include "textdata/text_file.h"

namespace tolva::textdata {

// A count for the host: counts past what a Long holds are reported as its largest value.
constexpr Long ToLong(std::int64_t n) noexcept {
  return n > std::numeric_limits<Long>::max()   ? std::numeric_limits<Long>::max()
         : n < std::numeric_limits<Long>::min() ? std::numeric_limits<Long>::min()
                                                : static_cast<Long>(n);
}

class ProgressPacer {
 public:
  explicit ProgressPacer(detail::ComponentState& state) noexcept
      : state_(state), interval_(ProgressInterval(state.props.read_write_increment)) {}
  ProgressPacer(const ProgressPacer&) = delete;
  ProgressPacer& operator=(const ProgressPacer&) = delete;

  // Raises the event with `message` and `records`. The handler receives
  // both by reference and may change them; the next event starts afresh.
  void Report(std::string_view message, std::int64_t records) {
    if (!state_.events) return;  // nobody listens: skip even the copy of the text
    // The same text row after row: compared, not copied.
    if (std::string_view(message_) != message) message_.assign(message);
    Long count = ToLong(records);
    state_.Raise(&Tolva2011RegisterEvents::ReadWriteProgress, message_, count);
  }

  // After each record: when `records` is a multiple of ReadWriteIncrement,
  // reports, yields to the host and returns whether it cancelled.
  // Takes the text as a literal: with its length known at compile time the
  // check that the handler left it unchanged is two loads and a compare,
  // which matters when every row is due.
  template <std::size_t N>
  bool Step(const char (&message)[N], std::int64_t records) {
    // At the default interval of 1 every record is due; no division per row.
    if (interval_ != 1 && records % interval_ != 0) return false;
    if (state_.events) {
      if (message_.size() != N - 1 || std::memcmp(message_.data(), message, N - 1) != 0)
        message_.assign(message, N - 1);
      Long count = ToLong(records);
      state_.Raise(&Tolva2011RegisterEvents::ReadWriteProgress, message_, count);
    }
    state_.DoEvents();
    return state_.text.cancel != kFalse;
  }

  // The reader starts extracting: a cancel left from an earlier read no
  // longer counts.
  void ClearCancel() noexcept { state_.text.cancel = kFalse; }

 private:
  detail::ComponentState& state_;
  std::int64_t interval_;  // taken once: a handler changing it mid-read does not upset the pacing
  std::string message_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_PROGRESS_PACER_H_
