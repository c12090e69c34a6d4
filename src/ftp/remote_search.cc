#include "ftp/remote_search.h"

#include <string>

#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"

namespace tolva::ftp {

std::optional<platform::DateTime> RemoteSearch::Today(detail::ComponentState& state) {
  try {
    if (state.services.system) return state.services.system->Now();
  } catch (...) {
  }
  return std::nullopt;
}

void RemoteSearch::RecordSearchError(const std::string& tag, std::string& error_message) {
  Long code = LastLibraryError(state_);
  // Running out of entries is how every search ends; it is no error.
  if (!records_errors_ || code == static_cast<Long>(platform::kErrorNoMoreFiles)) return;
  error_message = RecordError(state_.ftp, "Error Finding Files - " + component_.FTPSessionError(tag, code), "");
}

bool RemoteSearch::Run(const std::string& mask, const std::string& tag, Order order, std::string& error_message,
                       const OnEntry& on_entry, bool records_errors) {
  records_errors_ = records_errors;
  SessionState& f = state_.ftp;
  platform::InternetLibrary* lib = state_.services.internet.get();
  const std::optional<platform::DateTime> today = Today(state_);
  platform::FindData record;
  f.find_handle =
      lib ? ToLong(lib->FindFirstFile(ToHandle(f.connect_handle), mask, record, platform::kInternetFlagReload)) : 0;
  if (f.find_handle == 0) {
    const bool nothing_matched = LastLibraryError(state_) == static_cast<Long>(platform::kErrorNoMoreFiles);
    RecordSearchError(tag, error_message);
    f.stop_done = f.stop_requested;
    return nothing_matched;
  }

  auto stopped = [&] { return IsTrue(f.stop_requested); };
  auto next = [&] {
    record = platform::FindData{};
    if (lib->FindNextFile(ToHandle(f.find_handle), record)) return true;
    RecordSearchError(tag, error_message);
    return false;
  };
  try {
    if (order == Order::kReportThenYield) {
      bool go_on = on_entry(DecodeEntry(record, today), record);
      state_.DoEvents();
      while (go_on && !stopped() && next()) {
        go_on = on_entry(DecodeEntry(record, today), record);
        state_.DoEvents();
      }
    } else {
      state_.DoEvents();
      while (!stopped()) {
        if (!on_entry(DecodeEntry(record, today), record)) break;
        if (!next()) break;
        state_.DoEvents();
      }
    }
  } catch (...) {
    // Whatever went wrong, the search must not keep the session busy.
    component_.FTPCloseHandle(f.find_handle);
    throw;
  }
  f.stop_done = f.stop_requested;
  component_.FTPCloseHandle(f.find_handle);
  return true;
}

}  // namespace tolva::ftp
