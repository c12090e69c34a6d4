// Turns the lines of a directory listing into entries: MLSD facts where the
// server offers them, else LIST output in Unix ("ls -l") or DOS style.
#ifndef TOLVA_SRC_PLATFORM_LINUX_FTP_LISTING_PARSER_H_
#define TOLVA_SRC_PLATFORM_LINUX_FTP_LISTING_PARSER_H_

#include <string_view>
#include <vector>

#include "tolva/platform/internet.h"

namespace tolva::platform::posix::ftp {

class ListingParser {
 public:
  // `current_year` is given to Unix lines that show a time instead of a year.
  explicit ListingParser(int current_year) noexcept : current_year_(current_year) {}

  // One MLSD line ("type=file;size=3;modify=20200102030405; name"). The
  // directory itself and its parent (cdir/pdir) are directory entries under
  // the names the server gives them. False for lines without facts or name.
  bool ParseMlsdLine(std::string_view line, FindData& entry) const noexcept;
  // One LIST line in Unix or DOS style. False for "total N", blank and
  // unrecognised lines.
  bool ParseListLine(std::string_view line, FindData& entry) const noexcept;

  // A whole listing (LF or CR LF line ends). Names are kept as the server
  // wrote them, "." and ".." included: whether a name may become a local
  // path is decided where one is made.
  std::vector<FindData> ParseListing(std::string_view text, bool mlsd) const noexcept;

 private:
  bool ParseUnixLine(std::string_view line, FindData& entry) const;
  bool ParseDosLine(std::string_view line, FindData& entry) const;

  int current_year_;
};

}  // namespace tolva::platform::posix::ftp

#endif  // TOLVA_SRC_PLATFORM_LINUX_FTP_LISTING_PARSER_H_
