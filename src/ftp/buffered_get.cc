#include "ftp/buffered_get.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "ftp/error_recorder.h"
#include "ftp/file_lookup.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/remote_file.h"

namespace tolva::ftp {

Boolean BufferedGet::Run(const std::string& remote_file, const std::string& local_file, Boolean ascii,
                         std::string& error_message, Long buffer_size) {
  SessionState& f = state_.ftp;
  f.stop_requested = kFalse;
  f.stop_done = kFalse;
  const std::string remote = Trim(remote_file);
  const std::string local = Trim(local_file);
  auto fail = [&](const std::string& title, const std::string& detail) {
    error_message = RecordError(f, title, detail);
    return kFalse;
  };
  if (remote.empty()) return fail("Can't Get File", "Remote File has not been defined.");
  const std::string title = "Can't Get File [" + remote + "]";
  if (local.empty()) return fail(title, "Local File has not been defined.");

  DecodedEntry entry;
  std::string lookup_message;
  if (!LookUpFile(component_, state_, remote, "FTPSessionFileExistsFull", lookup_message, &entry)) {
    return fail(title, "File does not exist.");
  }
  const std::uint64_t size = entry.size;
  if (size == 0) return fail(title, "File is empty.");
  // Small files need no blocks: one call of the library moves them.
  if (buffer_size <= 0 || size <= static_cast<std::uint64_t>(buffer_size)) {
    return component_.FTPSessionGet(remote_file, local_file, ascii, error_message);
  }
  std::string msg;
  if (!IsTrue(component_.FTPSessionTest(msg))) return fail(title, msg);

  platform::FileError file_error;
  std::unique_ptr<platform::File> file;
  if (state_.services.files) {
    // An existing longer file keeps its tail after the new data, on purpose:
    // hosts that fetch into a fixed-size file rely on it.
    file = state_.services.files->Open(local, platform::OpenMode::kWriteKeep, file_error);
  } else {
    file_error = {75, "Path/File access error"};
  }
  if (!file) return fail(title, LocalFault(state_, file_error));

  const std::uint32_t block_size = BlockSize(buffer_size);
  const std::uint32_t type = IsTrue(ascii) ? platform::kFtpTransferTypeAscii : platform::kFtpTransferTypeBinary;
  if (!OpenRemoteForReading(component_, state_, remote, type, "FTPSessionGetBuffered", error_message)) {
    file->Close(file_error);
    return kFalse;
  }

  platform::InternetLibrary& lib = *state_.services.internet;
  std::string name = remote;
  Long total = ClampToLong(size);
  auto progress = [&](std::uint64_t received) {
    // The host gets copies: a handler that changes them cannot derail the loop.
    std::string n = name;
    Long read = ClampToLong(received);
    Long all = total;
    state_.Raise(&Tolva2011RegisterEvents::FTPSessionGetProgress, n, read, all);
  };
  auto close_all = [&] {
    platform::FileError close_error;
    const bool closed = !file || file->Close(close_error);
    file.reset();
    component_.FTPCloseHandle(f.file_handle);
    if (!closed && !file_error) file_error = close_error;
    return closed;
  };

  try {
    std::vector<char> block(block_size);
    std::uint64_t received = 0;
    std::uint32_t got = 0;
    bool stopped = false;
    progress(0);
    for (;;) {
      if (!lib.ReadFile(ToHandle(f.file_handle), block.data(), block_size, got)) {
        Long code = LastLibraryError(state_);
        const std::string text = component_.FTPSessionError("FTPSessionGetBuffered", code);
        text.empty() ? fail(title, "FTP Read Error") : fail(title + " - FTP Read Error", text);
        close_all();  // the part already written stays
        return kFalse;
      }
      state_.DoEvents();
      if (IsTrue(f.stop_requested)) {
        // The bytes of this read are neither counted nor written.
        f.stop_done = kTrue;
        stopped = true;
        break;
      }
      received += got;
      if (got < block_size) break;
      if (!file->Write(block.data(), block_size, file_error)) break;
      progress(received);
    }
    if (!file_error && !stopped && got >= 1) file->Write(block.data(), got, file_error);
    if (file_error) {
      // A local file that can't take the data is a failure, never a silent loss.
      close_all();
      return fail(title, LocalFault(state_, file_error));
    }
    progress(received);
  } catch (...) {
    close_all();
    throw;
  }
  if (!close_all()) return fail(title, LocalFault(state_, file_error));
  // A stopped get still reports success, on purpose: hosts test FTPSessionStopped.
  return kTrue;
}

}  // namespace tolva::ftp
