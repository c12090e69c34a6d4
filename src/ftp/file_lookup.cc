#include "ftp/file_lookup.h"

#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/remote_search.h"
#include "ftp/search_preamble.h"

namespace tolva::ftp {

bool LookUpFile(Tolva2011Register& component, detail::ComponentState& state, const std::string& file_name,
                const char* tag, std::string& error_message, DecodedEntry* entry) {
  // The existence tests leave the stop flags alone: they are not stoppable.
  const auto name =
      RunPreamble(component, state, file_name, {"File Name", "Can't Find File", false, true}, error_message);
  if (!name) return false;
  SessionState& f = state.ftp;
  platform::FindData record;
  f.find_handle = ToLong(
      state.services.internet->FindFirstFile(ToHandle(f.connect_handle), *name, record, platform::kInternetFlagReload));
  if (f.find_handle == 0) {
    Long code = LastLibraryError(state);
    if (code != static_cast<Long>(platform::kErrorNoMoreFiles)) {
      error_message = RecordError(f, "Error Finding Files - " + component.FTPSessionError(tag, code), "");
    }
    return false;
  }
  if (entry) *entry = DecodeEntry(record, RemoteSearch::Today(state));
  component.FTPCloseHandle(f.find_handle);
  return true;
}

}  // namespace tolva::ftp
