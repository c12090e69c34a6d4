// Whole-file transfers inside the open session: one file each way, the
// automatic choice of text or binary, and every file that matches a mask.
#include <string>
#include <vector>

#include "component/component_state.h"
#include "ftp/error_recorder.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/local_name_guard.h"
#include "ftp/remote_search.h"
#include "ftp/search_preamble.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;

namespace {

// Only exact host true asks for text mode; 1 and any other value mean binary.
std::uint32_t TransferType(Boolean ascii) noexcept {
  return IsTrue(ascii) ? platform::kFtpTransferTypeAscii : platform::kFtpTransferTypeBinary;
}

}  // namespace

Boolean Tolva2011Register::FTPSessionGet(const std::string& RemoteFile, const std::string& LocalFile, Boolean AsciiFile,
                                         std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    const std::uint32_t type = TransferType(AsciiFile);
    const std::string remote = ftp::Trim(RemoteFile);
    const std::string local = ftp::Trim(LocalFile);
    auto fail = [&](const std::string& title, const std::string& detail) {
      ErrorMessage = ftp::RecordError(f, title, detail);
      return kFalse;
    };
    if (remote.empty()) return fail("Can't Get File", "Remote File has not been defined.");
    const std::string title = "Can't Get File [" + remote + "]";
    // No full stop of its own here, kept on purpose: the short text shows it without.
    if (local.empty()) return fail(title, "Local File has not been defined");
    std::string msg;
    if (!IsTrue(FTPSessionTest(msg))) return fail(title, msg);
    if (s_->services.internet->GetFile(ftp::ToHandle(f.connect_handle), remote, local, false, 0,
                                       type | platform::kInternetFlagReload)) {
      return kTrue;
    }
    Long code = ftp::LastLibraryError(*s_);
    const std::string text = FTPSessionError("FTPSessionGet", code);
    return text.empty() ? fail(title, "Get Error") : fail(title + " - Get Error", text);
  });
}

Boolean Tolva2011Register::FTPSessionGetAuto(const std::string& RemoteFile, const std::string& LocalFile,
                                             std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    // Always binary first: the received copy is then judged as it is.
    if (!IsTrue(FTPSessionGet(RemoteFile, LocalFile, kFalse, ErrorMessage))) return kFalse;
    const std::string local = ftp::Trim(LocalFile);
    const Boolean ascii = FileTestAscii(local);
    if (IsTrue(ascii)) {
      std::string ignored;
      KillFile(local, ignored);
      if (!IsTrue(FTPSessionGet(RemoteFile, LocalFile, kTrue, ErrorMessage))) return kFalse;
    }
    s_->ftp.last_auto_ascii = ascii;
    return kTrue;
  });
}

std::string Tolva2011Register::FTPSessionGetAutoAscii() const noexcept {
  return Guarded(std::string(), [&] { return std::string(IsTrue(s_->ftp.last_auto_ascii) ? "True" : "False"); });
}

Boolean Tolva2011Register::FTPSessionGetMask(const std::string& FileMask, const std::string& LocalDirectory,
                                             std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    const auto mask =
        ftp::RunPreamble(*this, *s_, FileMask, {"File Mask", "Can't Get Files", true, false}, ErrorMessage);
    if (!mask) return kFalse;
    Long files = 0;
    Long directories = 0;
    if (!IsTrue(FTPSessionFileFindCount(*mask, files, directories, ErrorMessage))) return kFalse;
    if (files == 0) return kTrue;

    s_->DoEvents();
    if (IsTrue(f.stop_requested)) {
      // Stopped before anything was listed: nothing lost, so still a success.
      f.stop_done = kTrue;
      return kTrue;
    }
    // The listing is complete and closed before the first transfer, which
    // needs the connection to itself.
    std::vector<std::string> names;  // as listed, NULs and all, so the guard sees them
    names.reserve(static_cast<std::size_t>(files));
    std::size_t kept = 0;  // files among the names, at most the number counted
    std::string unused_message;
    bool listed = false;
    ftp::RemoteSearch(*this, *s_)
        .Run(
            *mask, "FTPSessionFileFindCount", ftp::RemoteSearch::Order::kYieldThenReport, unused_message,
            [&](const ftp::DecodedEntry& e, const platform::FindData& raw) {
              listed = true;
              if (!e.directory) {
                if (kept < static_cast<std::size_t>(files)) {
                  names.push_back(raw.name);
                  ++kept;
                }
              } else if (raw.name == "." || raw.name == "..") {
                // Other directories are passed over in silence; these two
                // are names a careless client would write through, so the
                // host hears that they were refused.
                names.push_back(raw.name);
              }
              return true;
            },
            /*records_errors=*/false);
    if (!listed && !IsTrue(f.stop_requested)) return kTrue;

    s_->DoEvents();
    if (!IsTrue(f.stop_requested)) {
      const std::string directory = AddMissingBackslash(LocalDirectory);
      for (const std::string& raw : names) {
        std::string name = ftp::ListedName(raw);
        Boolean success = kFalse;
        if (ftp::IsSafeLocalName(raw)) {
          success = FTPSessionGetAuto(name, directory + name, ErrorMessage);
        } else {
          // Never used as a local path: reported as failed and skipped.
          ErrorMessage = ftp::RecordError(f, "Can't Get File [" + name + "]", ftp::kUnsafeNameDetail);
        }
        s_->Raise(&Tolva2011RegisterEvents::FTPSessionFileDownloaded, name, success);
        s_->DoEvents();
        if (IsTrue(f.stop_requested)) break;
      }
    }
    f.stop_done = f.stop_requested;
    if (!IsTrue(f.stop_requested)) return kTrue;
    ErrorMessage = ftp::RecordError(f, "Getting of Files [" + *mask + "]", "Interrupted");
    return kFalse;
  });
}

Boolean Tolva2011Register::FTPSessionPut(const std::string& LocalFile, const std::string& RemoteFile, Boolean AsciiFile,
                                         std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    const std::string local = ftp::Trim(LocalFile);
    // The remote name is deliberately not checked: an empty one fails at the server.
    const std::string remote = ftp::Trim(RemoteFile);
    auto fail = [&](const std::string& title, const std::string& detail) {
      ErrorMessage = ftp::RecordError(f, title, detail);
      return kFalse;
    };
    if (local.empty()) return fail("Can't Put File", "Local File has not been defined.");
    const std::string title = "Can't Put File [" + local + "]";
    std::string msg;
    if (!IsTrue(FTPSessionTest(msg))) return fail(title, msg);
    if (s_->services.internet->PutFile(ftp::ToHandle(f.connect_handle), local, remote, TransferType(AsciiFile))) {
      return kTrue;
    }
    Long code = ftp::LastLibraryError(*s_);
    const std::string text = FTPSessionError("FTPSessionPut", code);
    return text.empty() ? fail(title, "FTP Put Error.") : fail(title + " - FTP Put Error", text);
  });
}

}  // namespace tolva
