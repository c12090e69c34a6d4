// Turns one listed directory entry into what the host sees: a directory
// flag, the name, a size it can hold in a Long, and the write date and time
// as texts, with the listing's year corrected.
#ifndef TOLVA_SRC_FTP_ENTRY_DECODER_H_
#define TOLVA_SRC_FTP_ENTRY_DECODER_H_

#include <cstdint>
#include <optional>
#include <string>

#include "tolva/host_types.h"
#include "tolva/platform/internet.h"
#include "tolva/platform/system_info.h"

namespace tolva::ftp {

struct DecodedEntry {
  bool directory = false;
  std::string name;        // the listed name up to its first NUL
  std::uint64_t size = 0;  // full size; hosts get ClampToLong(size)
  std::string write_date;  // "yyyy-mm-dd", or "" when the time is unknown
  std::string write_time;  // "hh:nn", or "" at exactly midnight or when unknown
};

// Decodes `data`. `today` is the local date now; without it the listed year
// is kept as it stands.
DecodedEntry DecodeEntry(const platform::FindData& data, const std::optional<platform::DateTime>& today);

// The listed name up to its first NUL.
std::string ListedName(const std::string& raw);

// Listings that give no year make the library assume the current one, so a
// file from late last year would seem to come from the future: the year is
// walked back until the date is not after today. Returns the date as
// "yyyy-mm-dd", or "" for fields that make no date.
std::string CorrectedDate(int year, int month, int day, const std::optional<platform::DateTime>& today);

}  // namespace tolva::ftp

#endif  // TOLVA_SRC_FTP_ENTRY_DECODER_H_
