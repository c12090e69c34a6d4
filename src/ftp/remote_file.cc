#include "ftp/remote_file.h"

#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"

namespace tolva::ftp {

bool OpenRemoteForReading(Tolva2011Register& component, detail::ComponentState& state, const std::string& name,
                          std::uint32_t transfer_type, const char* tag, std::string& error_message) {
  SessionState& f = state.ftp;
  f.file_handle = ToLong(state.services.internet->OpenFile(ToHandle(f.connect_handle), name, platform::kGenericRead,
                                                           transfer_type | platform::kInternetFlagReload));
  if (f.file_handle != 0) return true;
  Long code = LastLibraryError(state);
  const std::string text = component.FTPSessionError(tag, code);
  const std::string title = "Can't Open File [" + name + "]";
  error_message =
      text.empty() ? RecordError(f, title, "FTP Open Error") : RecordError(f, title + " - FTP Open Error", text);
  return false;
}

std::string Describe(const platform::FileError& error) {
  if (!error.description.empty()) return error.description;
  if (error.number != 0) return "Error " + std::to_string(error.number);
  return "Path/File access error";
}

std::string LocalFault(detail::ComponentState& state, const platform::FileError& error) {
  if (error.number != 0) state.last_runtime_error = error.number;
  return Describe(error);
}

}  // namespace tolva::ftp
