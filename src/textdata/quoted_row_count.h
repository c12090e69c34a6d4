// Counting the fields of a quoted row without walking it field by field.
//
// In most quoted rows every quote sits where the quoting rules expect it:
// an opening quote right after a delimiter (or at the start of the line),
// a closing quote right before a delimiter (or at the end of the line), and
// doubled quotes inside quoted fields. In such a row a delimiter separates
// two fields exactly when an even number of quotes comes before it, so the
// fields can be counted 64 bytes at a time from bit masks, with no branch
// per field. A row with a quote anywhere else (a quote inside an unquoted
// field, a closing quote followed by something other than a delimiter, a
// field that runs on past the line) is reported as not countable this way,
// and the splitter walks it by the general rules.
#ifndef TOLVA_SRC_TEXTDATA_QUOTED_ROW_COUNT_H_
#define TOLVA_SRC_TEXTDATA_QUOTED_ROW_COUNT_H_

#include <cstdint>
#include <string_view>

namespace tolva::textdata {

// The number of fields of the quoted row `line` for a one-byte delimiter
// matched as `a` or `b` (neither a double quote), or -1 when the row has a
// quote out of place. `text_end` bounds how far past the line bytes may be
// read (they are never counted).
std::int64_t CountWellQuotedRow(std::string_view line, const char* text_end, char a, char b) noexcept;
// The same with sixteen-byte vectors only (what processors without wider
// ones run; exposed so tests cover it on every machine).
std::int64_t CountWellQuotedRowBaseline(std::string_view line, const char* text_end, char a, char b) noexcept;

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_QUOTED_ROW_COUNT_H_
