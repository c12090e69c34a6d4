// Fuzz target of the directory listing decoder: a LIST or MLSD listing as a
// server sends it, decoded into entries and then into what the host sees.
// Byte 0 picks MLSD (bit 0) and today's date; the rest is the listing.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "fuzz/fuzz_check.h"
#include "ftp/entry_decoder.h"
#include "platform/linux/ftp/listing_parser.h"

namespace {

bool Digits(std::string_view s) {
  for (char c : s)
    if (c < '0' || c > '9') return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tolva::platform;
  if (size < 1) return 0;
  const bool mlsd = data[0] & 1;
  const DateTime today{1990 + (data[0] >> 1) % 64, 1 + (data[0] >> 2) % 12, 1 + (data[0] >> 3) % 28, 12, 0, 0};
  const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
  char today_text[16];
  std::snprintf(today_text, sizeof today_text, "%04d-%02d-%02d", today.year, today.month, today.day);

  const posix::ftp::ListingParser parser(today.year);
  for (const FindData& entry : parser.ParseListing(text, mlsd)) {
    Check(!entry.name.empty() && text.find(entry.name) != std::string_view::npos, "the name is listed text");
    Check(entry.name.find('\n') == std::string::npos, "a name stays on its line");
    Check(entry.attributes == kFileAttributeDirectory || entry.attributes == kFileAttributeNormal, "one kind");
    const FindTime& t = entry.last_write;
    if (t.valid)
      Check(t.year >= 1601 && t.year <= 9999 && t.month >= 1 && t.month <= 12 && t.day >= 1 && t.day <= 31 &&
                t.hour >= 0 && t.hour < 24 && t.minute >= 0 && t.minute < 60,
            "a valid time has fields in range");

    const tolva::ftp::DecodedEntry decoded = tolva::ftp::DecodeEntry(entry, today);
    Check(decoded.name == entry.name.substr(0, entry.name.find('\0')), "the host's name ends at a NUL");
    Check(decoded.directory == (entry.attributes == kFileAttributeDirectory), "the directory flag");
    Check(decoded.size == entry.size, "the size");
    const std::string& date = decoded.write_date;
    Check(date.empty() == !t.valid, "a valid time gives a date");
    if (date.empty()) {
      Check(decoded.write_time.empty(), "no time without a date");
      continue;
    }
    Check(date.size() == 10 && date[4] == '-' && date[7] == '-' && Digits(date.substr(0, 4)) &&
              Digits(date.substr(5, 2)) && Digits(date.substr(8)),
          "the date reads yyyy-mm-dd");
    Check(date.compare(5, 2, "01") >= 0 && date.compare(5, 2, "12") <= 0 && date.compare(8, 2, "01") >= 0 &&
              date.compare(8, 2, "31") <= 0,
          "the date's month and day exist");
    Check(date <= today_text, "a listed date is never after today");
    const std::string& time = decoded.write_time;
    Check(time.empty() || (time.size() == 5 && time[2] == ':' && time != "00:00" && time.compare(0, 2, "24") < 0 &&
                           time.compare(3, 2, "60") < 0),
          "the time reads hh:nn and is not midnight");
  }
  return 0;
}
