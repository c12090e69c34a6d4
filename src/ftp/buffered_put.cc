#include "ftp/buffered_put.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/remote_file.h"

namespace tolva::ftp {

Boolean BufferedPut::Run(const std::string& local_file, const std::string& remote_file, Boolean ascii,
                         std::string& error_message, Long buffer_size) {
  SessionState& f = state_.ftp;
  f.stop_requested = kFalse;
  f.stop_done = kFalse;
  const std::string local = Trim(local_file);
  const std::string remote = Trim(remote_file);  // not checked: an empty one fails at the server
  auto fail = [&](const std::string& title, const std::string& detail) {
    error_message = RecordError(f, title, detail);
    return kFalse;
  };
  if (local.empty()) return fail("Can't Put File", "Local File has not been defined.");
  const std::string title = "Can't Put File [" + local + "]";
  if (!IsTrue(component_.FileExists(local))) return fail(title, "File does not exist.");
  std::uint64_t length = 0;
  platform::FileError file_error;
  if (state_.services.files) state_.services.files->Length(local, length, file_error);
  if (length < 1) return fail(title, "File is empty.");
  // Small files need no blocks: one call of the library moves them.
  if (buffer_size < 1 || length <= static_cast<std::uint64_t>(buffer_size)) {
    return component_.FTPSessionPut(local_file, remote_file, ascii, error_message);
  }
  std::string msg;
  if (!IsTrue(component_.FTPSessionTest(msg))) return fail(title, msg);

  platform::InternetLibrary& lib = *state_.services.internet;
  const std::uint32_t type = IsTrue(ascii) ? platform::kFtpTransferTypeAscii : platform::kFtpTransferTypeBinary;
  // A put never asks for a reload.
  f.file_handle = ToLong(lib.OpenFile(ToHandle(f.connect_handle), remote, platform::kGenericWrite, type));
  if (f.file_handle == 0) {
    Long code = LastLibraryError(state_);
    const std::string text = component_.FTPSessionError("FTPSessionPutBuffered", code);
    return text.empty() ? fail(title, "FTP Open Error.") : fail(title + " - FTP Open Error", text);
  }
  const std::uint32_t block_size = BlockSize(buffer_size);

  file_error = {};
  std::unique_ptr<platform::File> file;
  if (state_.services.files) {
    file = state_.services.files->Open(local, platform::OpenMode::kRead, file_error);
  } else {
    file_error = {75, "Path/File access error"};
  }
  if (!file) {
    // Kept as it always was, on purpose: the get wording with the remote
    // name, and the remote file handle stays open on this path.
    return fail("Can't Get File [" + remote + "]", LocalFault(state_, file_error));
  }

  std::string name = local;
  const std::uint64_t total = file->Size();
  auto progress = [&](std::uint64_t sent) {
    // The host gets copies: a handler that changes them cannot derail the loop.
    std::string n = name;
    Long written = ClampToLong(sent);
    Long all = ClampToLong(total);
    state_.Raise(&Tolva2011RegisterEvents::FTPSessionPutProgress, n, written, all);
  };
  auto close_all = [&] {
    platform::FileError ignored;
    if (file) file->Close(ignored);
    file.reset();
    component_.FTPCloseHandle(f.file_handle);
  };

  bool interrupted = false;
  try {
    std::vector<char> block(block_size);
    std::uint64_t sent = 0;
    progress(0);
    for (;;) {
      const std::uint64_t left = total - sent;
      const std::uint32_t chunk = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, block_size));
      if (chunk < 1) break;
      std::size_t got = 0;
      if (!file->Read(block.data(), chunk, got, file_error) || got != chunk) {
        // A file that shrank under us must not be padded with bytes it never had.
        if (!file_error) file_error = {62, "Input past end of file"};
        fail(title + " - FTP Put Error", LocalFault(state_, file_error));
        close_all();
        return kFalse;
      }
      std::uint32_t written = 0;
      if (!lib.WriteFile(ToHandle(f.file_handle), block.data(), chunk, written)) {
        Long code = LastLibraryError(state_);
        const std::string text = component_.FTPSessionError("FTPSessionPutBuffered", code);
        // No full stop in the bare detail, kept as it always was.
        text.empty() ? fail(title, "FTP Put Error") : fail(title + " - FTP Put Error", text);
        close_all();
        return kFalse;
      }
      sent += chunk;  // the requested chunk, whatever count the library reports
      progress(sent);
      if (sent >= total) break;
      state_.DoEvents();
      if (IsTrue(f.stop_requested)) {
        interrupted = true;
        f.stop_done = kTrue;
        break;
      }
    }
  } catch (...) {
    close_all();
    throw;
  }
  close_all();
  // A stopped put is a failure, unlike a stopped get: the server holds a partial file.
  if (interrupted) return fail(title, "Interrupted.");
  return kTrue;
}

}  // namespace tolva::ftp
