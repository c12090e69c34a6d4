// Fuzz target of the directory listing decoder: a LIST or MLSD listing as a
// server sends it, decoded into entries and then into what the host sees.
// Byte 0 picks MLSD (bit 0) and today's date; the rest is the listing.
#include <cstdio>
#include <string>
#include <string_view>

#include "ftp/entry_decoder.h"
#include "fuzz/fuzz_target.h"
#include "platform/linux/ftp/listing_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tolva::platform;
  if (size < 1) return 0;
  const DateTime today{1990 + (data[0] >> 1) % 64, 1 + (data[0] >> 2) % 12, 1 + (data[0] >> 3) % 28, 12, 0, 0};
  const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::string today_text = tolva::ftp::CorrectedDate(today.year, today.month, today.day, std::nullopt);

  const posix::ftp::ListingParser parser(today.year);
  for (const FindData& entry : parser.ParseListing(text, data[0] & 1)) {
    Check(!entry.name.empty() && text.find(entry.name) != std::string_view::npos &&
              entry.name.find('\n') == std::string::npos,
          "the name is text of its line");
    const FindTime& t = entry.last_write;

    const tolva::ftp::DecodedEntry decoded = tolva::ftp::DecodeEntry(entry, today);
    Check(decoded.name == entry.name.substr(0, entry.name.find('\0')), "the host's name ends at a NUL");
    // "yyyy-mm-dd", never after today, and "hh:nn" but never midnight.
    const std::string &date = decoded.write_date, &time = decoded.write_time;
    int y = 0, m = 0, d = 0, h = 0, n = 0, used = 0;
    Check(date.empty() == !t.valid && (!date.empty() || time.empty()), "a valid time gives a date");
    Check(date.empty() || (std::sscanf(date.c_str(), "%4d-%2d-%2d%n", &y, &m, &d, &used) == 3 && used == 10 && m >= 1 &&
                           m <= 12 && d >= 1 && d <= 31 && date <= today_text),
          "the date reads yyyy-mm-dd and is not after today");
    Check(date.empty() || y == t.year || tolva::ftp::CorrectedDate(y + 1, t.month, t.day, std::nullopt) > today_text,
          "a date is walked back no further than to the last year before today");
    Check(time.empty() || (std::sscanf(time.c_str(), "%2d:%2d%n", &h, &n, &used) == 2 && used == 5 && h < 24 &&
                           n < 60 && time != "00:00"),
          "the time reads hh:nn and is not midnight");
  }
  return 0;
}
