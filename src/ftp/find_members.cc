// Finding, counting, listing and deleting files in the current remote
// directory of the session.
#include <string>
#include <vector>

#include "component/component_state.h"
#include "ftp/error_recorder.h"
#include "ftp/file_lookup.h"
#include "ftp/handle_convert.h"
#include "ftp/library_error.h"
#include "ftp/remote_search.h"
#include "ftp/search_preamble.h"
#include "tolva/tolva2011register.h"

namespace tolva {

using detail::Guarded;
using ftp::DecodedEntry;
using ftp::RemoteSearch;

namespace {

constexpr ftp::PreambleTexts kFindTexts{"File Mask", "Can't Find Files", true, true};
constexpr ftp::PreambleTexts kDeleteTexts{"File Mask", "Can't Delete Files", true, true};
// The four listing members share one tag in their error texts; hosts match on it.
constexpr const char* kCountTag = "FTPSessionFileFindCount";

}  // namespace

Long Tolva2011Register::FTPSessionFileFind(const std::string& FileMask, std::string& ErrorMessage) noexcept {
  return Guarded(Long{0}, [&] {
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kFindTexts, ErrorMessage);
    if (!mask) return Long{0};
    Long count = 0;
    RemoteSearch(*this, *s_)
        .Run(*mask, "FTPSessionFileFind", RemoteSearch::Order::kYieldThenReport, ErrorMessage,
             [&](const DecodedEntry& e, const platform::FindData&) {
               ++count;  // counted even when the host cancels on it
               Boolean directory = ToBoolean(e.directory);
               std::string name = e.name;
               Long size = ftp::ClampToLong(e.size);
               std::string date = e.write_date;
               std::string time = e.write_time;
               Boolean cancel = kFalse;
               s_->Raise(&Tolva2011RegisterEvents::FTPSessionFileFound, directory, name, size, date, time, cancel);
               return cancel == kFalse;
             });
    return count;
  });
}

Boolean Tolva2011Register::FTPSessionFileFindCount(const std::string& FileMask, Long& NumberFiles,
                                                   Long& NumberDirectories, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    NumberFiles = 0;
    NumberDirectories = 0;
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kFindTexts, ErrorMessage);
    if (!mask) return kFalse;
    Long files = 0;
    Long directories = 0;
    const bool ok = RemoteSearch(*this, *s_)
                        .Run(*mask, kCountTag, RemoteSearch::Order::kReportThenYield, ErrorMessage,
                             [&](const DecodedEntry& e, const platform::FindData&) {
                               ++(e.directory ? directories : files);
                               return true;
                             });
    NumberFiles = files;
    NumberDirectories = directories;
    return ToBoolean(ok);
  });
}

Long Tolva2011Register::FTPSessionFileFindDirectories(const std::string& FileMask, HostArray<std::string>& Directories,
                                                      Long MaxDirectories, std::string& ErrorMessage) noexcept {
  return Guarded(Long{0}, [&] {
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kFindTexts, ErrorMessage);
    if (!mask) return Long{0};
    Long count = 0;
    RemoteSearch(*this, *s_)
        .Run(*mask, kCountTag, RemoteSearch::Order::kReportThenYield, ErrorMessage,
             [&](const DecodedEntry& e, const platform::FindData&) {
               if (!e.directory) return true;
               // The count goes on past the array, so a host can enlarge it and ask again.
               if (++count <= MaxDirectories) Directories.Store(count, e.name);
               return true;
             });
    return count;
  });
}

Long Tolva2011Register::FTPSessionFileFindFiles(const std::string& FileMask, HostArray<std::string>& Files,
                                                Long MaxFiles, std::string& ErrorMessage) noexcept {
  return Guarded(Long{0}, [&] {
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kFindTexts, ErrorMessage);
    if (!mask) return Long{0};
    Long count = 0;
    RemoteSearch(*this, *s_)
        .Run(*mask, kCountTag, RemoteSearch::Order::kReportThenYield, ErrorMessage,
             [&](const DecodedEntry& e, const platform::FindData&) {
               if (e.directory) return true;
               if (++count <= MaxFiles) Files.Store(count, e.name);
               return true;
             });
    return count;
  });
}

Long Tolva2011Register::FTPSessionFileFindFilesFull(const std::string& FileMask, HostArray<std::string>& Files,
                                                    HostArray<Long>& Sizes, HostArray<std::string>& Dates,
                                                    HostArray<std::string>& Times, Long MaxFiles,
                                                    std::string& ErrorMessage) noexcept {
  return Guarded(Long{0}, [&] {
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kFindTexts, ErrorMessage);
    if (!mask) return Long{0};
    Long count = 0;
    RemoteSearch(*this, *s_)
        .Run(*mask, kCountTag, RemoteSearch::Order::kReportThenYield, ErrorMessage,
             [&](const DecodedEntry& e, const platform::FindData&) {
               if (e.directory) return true;
               if (++count <= MaxFiles) {
                 Files.Store(count, e.name);
                 Sizes.Store(count, ftp::ClampToLong(e.size));
                 Dates.Store(count, e.write_date);
                 Times.Store(count, e.write_time);
               }
               return true;
             });
    return count;
  });
}

Boolean Tolva2011Register::FTPSessionFileExists(const std::string& FileName, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    return ToBoolean(ftp::LookUpFile(*this, *s_, FileName, "FTPSessionFileExists", ErrorMessage, nullptr));
  });
}

Boolean Tolva2011Register::FTPSessionFileExistsFull(const std::string& FileName, Long& Size, std::string& WriteDate,
                                                    std::string& WriteTime, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    DecodedEntry e;
    if (!ftp::LookUpFile(*this, *s_, FileName, "FTPSessionFileExistsFull", ErrorMessage, &e)) return kFalse;
    // Not found leaves the three as they were; found replaces all three.
    Size = ftp::ClampToLong(e.size);
    WriteDate = e.write_date;
    WriteTime = e.write_time;
    return kTrue;
  });
}

Boolean Tolva2011Register::FTPSessionFileDelete(const std::string& FilePath) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    ftp::ClearErrors(f);
    // The path goes to the server exactly as given: no trimming, no session test.
    bool deleted = false;
    if (s_->services.internet) {
      deleted = s_->services.internet->DeleteFile(ftp::ToHandle(f.connect_handle), FilePath);
    }
    std::string path = FilePath;
    Boolean success = ToBoolean(deleted);
    if (!deleted) {
      Long code = ftp::LastLibraryError(*s_);
      // Stored as it comes: no short text, no closing full stop.
      f.last_error_text = FTPSessionError("FTPSessionFileDelete", code);
    }
    s_->Raise(&Tolva2011RegisterEvents::FTPSessionFileDeleted, path, success);
    return ToBoolean(deleted);
  });
}

Boolean Tolva2011Register::FTPSessionFileDeleteMask(const std::string& FileMask, std::string& ErrorMessage) noexcept {
  return Guarded(kFalse, [&] {
    ftp::SessionState& f = s_->ftp;
    const auto mask = ftp::RunPreamble(*this, *s_, FileMask, kDeleteTexts, ErrorMessage);
    if (!mask) return kFalse;
    Long files = 0;
    Long directories = 0;
    if (!IsTrue(FTPSessionFileFindCount(*mask, files, directories, ErrorMessage))) return kFalse;
    if (files == 0) return kTrue;

    // The whole listing is gathered before anything is removed, so deleting
    // never disturbs the listing it comes from.
    s_->DoEvents();
    if (IsTrue(f.stop_requested)) {
      f.stop_done = kTrue;
      return kTrue;
    }
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(files));
    std::string unused_message;
    bool listed = false;
    ftp::RemoteSearch(*this, *s_)
        .Run(
            *mask, kCountTag, ftp::RemoteSearch::Order::kReportThenYield, unused_message,
            [&](const DecodedEntry& e, const platform::FindData&) {
              listed = true;
              // Files added since the count find no room.
              if (!e.directory && names.size() < static_cast<std::size_t>(files)) {
                names.push_back(e.name);
              }
              return true;
            },
            /*records_errors=*/false);
    if (!listed) return kTrue;  // the directory emptied itself meanwhile

    s_->DoEvents();
    if (!IsTrue(f.stop_requested)) {
      for (std::string& name : names) {
        Boolean success = ToBoolean(s_->services.internet &&
                                    s_->services.internet->DeleteFile(ftp::ToHandle(f.connect_handle), name));
        // A failed deletion is reported and passed over; it does not change the result.
        s_->Raise(&Tolva2011RegisterEvents::FTPSessionFileDeleted, name, success);
        s_->DoEvents();
        if (IsTrue(f.stop_requested)) break;
      }
    }
    f.stop_done = f.stop_requested;
    if (!IsTrue(f.stop_requested)) return kTrue;
    ErrorMessage = ftp::RecordError(f, "Deletion of Files [" + *mask + "]", "Interrupted");
    return kFalse;
  });
}

}  // namespace tolva
