// Buffered transfers with progress and stop, and reading the head of a
// remote file into a string.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "component/component_state.h"
#include "ftp/buffered_get.h"
#include "ftp/buffered_put.h"
#include "ftp/error_recorder.h"
#include "ftp/file_lookup.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/remote_file.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;

Boolean Tolva2011Register::FTPSessionGetBuffered(const std::string& RemoteFile, const std::string& LocalFile,
                                                 Boolean AsciiFile, std::string& ErrorMessage,
                                                 Long BufferSize) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::BufferedGet(*this, *s_).Run(RemoteFile, LocalFile, AsciiFile, ErrorMessage, BufferSize);
  });
}

Boolean Tolva2011Register::FTPSessionPutBuffered(const std::string& LocalFile, const std::string& RemoteFile,
                                                 Boolean AsciiFile, std::string& ErrorMessage,
                                                 Long BufferSize) noexcept {
  return Guarded(kFalse, [&] {
    return ftp::BufferedPut(*this, *s_).Run(LocalFile, RemoteFile, AsciiFile, ErrorMessage, BufferSize);
  });
}

Boolean Tolva2011Register::FTPSessionGetBuffer(const std::string& RemoteFile, Long BytesRequired, std::string& Buffer,
                                               Long& BytesWritten, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    // Not a stoppable transfer: the stop flags are neither read nor cleared.
    ftp::SessionState& f = s_->ftp;
    const std::string remote = ftp::Trim(RemoteFile);
    auto fail = [&](const std::string& title, const std::string& detail) {
      ErrorMessage = ftp::RecordError(f, title, detail);
      return kFalse;
    };
    if (remote.empty()) return fail("Can't Get File", "Remote File has not been defined.");
    const std::string title = "Can't Get File [" + remote + "]";
    std::string msg;
    if (!IsTrue(FTPSessionTest(msg))) return fail(title, msg);
    ftp::DecodedEntry entry;
    std::string lookup_message;
    if (!ftp::LookUpFile(*this, *s_, remote, "FTPSessionFileExistsFull", lookup_message, &entry)) {
      return fail(title, "File does not exist.");
    }
    if (entry.size == 0) return fail(title, "File is empty.");
    if (!ftp::OpenRemoteForReading(*this, *s_, remote, platform::kFtpTransferTypeBinary, "FTPSessionGetBuffer",
                                   ErrorMessage)) {
      return kFalse;
    }
    // A request of nothing (or less) reads nothing and gives an empty buffer.
    const std::uint64_t wanted = BytesRequired > 0 ? static_cast<std::uint64_t>(BytesRequired) : 0;
    const std::uint32_t count = static_cast<std::uint32_t>(std::min(entry.size, wanted));
    std::uint32_t got = 0;
    bool read = true;
    std::vector<char> bytes;
    try {
      bytes.resize(count);
      // One read only: if the library delivers fewer bytes, the result is shorter.
      if (count > 0) read = s_->services.internet->ReadFile(ftp::ToHandle(f.file_handle), bytes.data(), count, got);
    } catch (...) {
      FTPCloseHandle(f.file_handle);
      throw;
    }
    BytesWritten = static_cast<Long>(std::min(got, count));
    if (!read) {
      Long code = ftp::LastLibraryError(*s_);
      const std::string text = FTPSessionError("FTPSessionGetBuffer", code);
      text.empty() ? fail(title, "FTP Read Error") : fail(title + " - FTP Read Error", text);
      FTPCloseHandle(f.file_handle);
      return kFalse;
    }
    // Bytes in, characters out: each byte is one character of the buffer.
    Buffer.assign(bytes.data(), static_cast<std::size_t>(BytesWritten));
    FTPCloseHandle(f.file_handle);
    return kTrue;
  });
}

void Tolva2011Register::FTPSessionStop() noexcept {
  s_->ftp.stop_requested = kTrue;
}

Boolean Tolva2011Register::FTPSessionStopped() const noexcept {
  return s_->ftp.stop_done;
}

}  // namespace tolva
