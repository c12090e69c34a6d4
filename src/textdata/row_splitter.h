// Splits one row of delimited text into fields. Every reader of delimited
// files (the array reader, its size test and the CSV database) goes through
// this one splitter, so they agree on every row.
//
// A row whose first line holds no double quote is plain: it is cut at every
// delimiter, and a delimiter at the end leaves one more, empty field. A row
// whose first line holds a quote anywhere is quoted: a field that starts
// with a quote runs to its closing quote, may hold delimiters, doubled
// quotes (read as one) and line ends (the following lines are taken from
// the cursor and joined with CR LF, whatever the file used); a field that
// does not start with a quote runs to the next delimiter and keeps any quote
// in it as it stands. The character after a closing quote is taken to be
// the delimiter and skipped. Kept on purpose: in a quoted row a delimiter at
// the very end of the line ends the row without an empty last field, while
// a plain row has one.
#ifndef TOLVA_SRC_TEXTDATA_ROW_SPLITTER_H_
#define TOLVA_SRC_TEXTDATA_ROW_SPLITTER_H_

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "textdata/byte_scan.h"
#include "textdata/delimiter_matcher.h"
#include "textdata/line_cursor.h"
#include "textdata/quoted_row_count.h"

namespace tolva::textdata {

// What a row's fields are handed to. Field(column, value, owned) receives
// each field with its 1-based column; when `owned` is not null, `value` is
// its whole contents and the sink may move the string away. A sink whose
// kWantsValues is false is never called: the splitter only counts.
struct CountingSink {
  static constexpr bool kWantsValues = false;
  void Field(std::int64_t, std::string_view, std::string*) noexcept {}
};

class RowSplitter {
 public:
  RowSplitter(LineCursor& cursor, const DelimiterMatcher& delimiter) noexcept
      : cursor_(cursor), delimiter_(delimiter), text_(cursor.Text()) {}
  RowSplitter(const RowSplitter&) = delete;
  RowSplitter& operator=(const RowSplitter&) = delete;

  // Splits the row that starts with `line` (a non-empty line just taken
  // from the cursor); a quoted field may take further lines from it.
  // Returns the number of fields.
  template <class Sink>
  std::int64_t Split(std::string_view line, Sink& sink) {
    return HasQuote(line) ? SplitQuoted(line, sink) : SplitPlain(line, sink);
  }

  // The number of fields of the row that starts with `line`, taken from
  // the cursor by Next(delimiter.FirstLower(), delimiter.FirstUpper(),
  // scan): a plain row is measured from the scan alone.
  std::int64_t Count(std::string_view line, const LineScan& scan) {
    if (scan.quote) {
      if (!delimiter_.SingleByte() || delimiter_.FirstLower() == kQuote) return SplitQuoted(line, counter_);
      const std::int64_t fields =
          CountWellQuotedRow(line, text_.data() + text_.size(), delimiter_.FirstLower(), delimiter_.FirstUpper());
      return fields >= 0 ? fields : CountQuoted(line);
    }
    if (delimiter_.SingleByte()) return static_cast<std::int64_t>(scan.matches) + 1;
    return delimiter_.Count(line) + 1;
  }

 private:
  static constexpr char kQuote = '"';

  // Whether the line holds a quote. The position of the next quote in the
  // text is remembered, so the text is searched once from start to end
  // however many lines it has.
  bool HasQuote(std::string_view line) noexcept {
    const auto start = static_cast<std::size_t>(line.data() - text_.data());
    if (!quote_known_ || next_quote_ < start) {
      const void* q = std::memchr(line.data(), kQuote, text_.size() - start);
      next_quote_ = q ? static_cast<std::size_t>(static_cast<const char*>(q) - text_.data()) : text_.size();
      quote_known_ = true;
    }
    return next_quote_ < start + line.size();
  }

  template <class Sink>
  std::int64_t SplitPlain(std::string_view line, Sink& sink) {
    if constexpr (!Sink::kWantsValues) {
      return delimiter_.Count(line) + 1;
    } else if (delimiter_.SingleByte()) {
      // The delimiter's places come from bit masks of 64 bytes at a time
      // instead of a search per field: wide rows have hundreds of fields,
      // and each is cut at the next set bit.
      const char* const text_end = text_.data() + text_.size();
      const std::size_t n = line.size();
      std::int64_t column = 0;
      std::size_t start = 0;
      for (std::size_t window = 0; window < n; window += 64) {
        std::uint64_t hits = DelimiterMask(line.data() + window, text_end);
        if (n - window < 64) hits &= (std::uint64_t{1} << (n - window)) - 1;  // only the line's own bytes
        for (; hits != 0; hits &= hits - 1) {
          const std::size_t at = window + static_cast<std::size_t>(__builtin_ctzll(hits));
          sink.Field(++column, line.substr(start, at - start), nullptr);
          start = at + 1;
        }
      }
      sink.Field(++column, line.substr(start), nullptr);
      return column;
    } else {
      std::int64_t column = 0;
      std::size_t start = 0;
      for (;;) {
        const std::size_t at = delimiter_.Find(line, start);
        if (at == DelimiterMatcher::npos) {
          sink.Field(++column, line.substr(start), nullptr);
          return column;
        }
        sink.Field(++column, line.substr(start, at - start), nullptr);
        start = at + 1;
      }
    }
  }

  // Bit i set when p[i] is the one-byte delimiter, in either case.
  std::uint64_t DelimiterMask(const char* p, const char* text_end) const noexcept {
    std::uint64_t hits = 0, quotes = 0;
    WindowMasks(p, text_end, delimiter_.FirstLower(), delimiter_.FirstUpper(), hits, quotes);
    return hits;
  }

  // The fields of a quoted row of a one-byte delimiter, counted by walking
  // the masks of delimiter and quote positions: the same rules as
  // SplitQuoted, without a search per field. A quoted field that runs past
  // the line is left to SplitQuoted, from that field on.
  std::int64_t CountQuoted(std::string_view line) {
    LineMasks masks(line, text_.data() + text_.size(), delimiter_.FirstLower(), delimiter_.FirstUpper());
    const std::size_t n = line.size();
    std::int64_t column = 0;
    std::size_t at = 0;
    while (at < n) {
      ++column;
      if (line[at] != kQuote) {
        const std::size_t found = masks.NextDelimiter(at);
        if (found >= n) return column;
        at = found + 1;
        continue;
      }
      for (std::size_t i = at + 1;;) {
        const std::size_t quote = masks.NextQuote(i);
        if (quote >= n) return SplitQuoted(line, counter_, at, column - 1);
        if (quote + 1 < n && line[quote + 1] == kQuote) {
          i = quote + 2;  // a doubled quote
          continue;
        }
        at = quote + 2;  // past the closing quote and the byte after it
        break;
      }
    }
    return column;
  }

  // Splits a quoted row from the field at `at`, with `column` fields before
  // it. A one-byte delimiter other than the quote is found, like the quotes,
  // from the masks of the line in hand.
  template <class Sink>
  std::int64_t SplitQuoted(std::string_view line, Sink& sink, std::size_t at = 0, std::int64_t column = 0) {
    const bool masked = delimiter_.SingleByte() && delimiter_.FirstLower() != kQuote;
    LineMasks masks = MasksOf(line);
    while (at < line.size()) {
      if (line[at] != kQuote) {
        std::size_t found = masked ? masks.NextDelimiter(at) : delimiter_.Find(line, at);
        if (masked && found >= line.size()) found = DelimiterMatcher::npos;
        if (found == DelimiterMatcher::npos) {
          if constexpr (Sink::kWantsValues)
            sink.Field(++column, line.substr(at), nullptr);
          else
            ++column;
          return column;
        }
        if constexpr (Sink::kWantsValues)
          sink.Field(++column, line.substr(at, found - at), nullptr);
        else
          ++column;
        at = found + 1;
        continue;
      }
      ++column;
      if (!QuotedField(line, at, column, sink, masks)) return column;
    }
    return column;
  }

  LineMasks MasksOf(std::string_view line) const noexcept {
    return LineMasks(line, text_.data() + text_.size(), delimiter_.FirstLower(), delimiter_.FirstUpper());
  }

  // Reads the quoted field whose opening quote is at line[at]. Returns false
  // when the field ended the row (it ran to the end of the text); otherwise
  // `line` and `at` are left where the row goes on, and `masks` are those
  // of `line`.
  template <class Sink>
  bool QuotedField(std::string_view& line, std::size_t& at, std::int64_t column, Sink& sink, LineMasks& masks) {
    // The value is a view into the text until a doubled quote or a line end
    // makes it differ from the text; from then on it is built in value_,
    // a piece at a time, so a long field is never copied over again.
    bool built = false;
    if constexpr (Sink::kWantsValues) value_.clear();
    std::size_t piece = at + 1;  // first character not yet in the value
    std::size_t i = piece;
    for (;;) {
      // A quote right here (a run of doubled quotes) is taken without a search.
      const std::size_t quote = i < line.size() && line[i] == kQuote ? i : masks.NextQuote(i);
      if (quote >= line.size()) {
        // The field goes on past the end of the line.
        if constexpr (Sink::kWantsValues) {
          value_.append(line.data() + piece, line.size() - piece);
          built = true;
        }
        if (cursor_.AtEnd()) return Finish(column, sink);
        do {
          line = cursor_.Next();
          if constexpr (Sink::kWantsValues) value_.append("\r\n", 2);
        } while (line.empty() && !cursor_.AtEnd());
        if (line.empty()) return Finish(column, sink);
        masks = MasksOf(line);
        piece = i = 0;
        continue;
      }
      if (quote + 1 < line.size() && line[quote + 1] == kQuote) {
        // A doubled quote stands for one.
        if constexpr (Sink::kWantsValues) {
          value_.append(line.data() + piece, quote + 1 - piece);
          built = true;
        }
        piece = i = quote + 2;
        continue;
      }
      if constexpr (Sink::kWantsValues) {
        if (built) {
          value_.append(line.data() + piece, quote - piece);
          sink.Field(column, value_, &value_);
        } else {
          sink.Field(column, line.substr(piece, quote - piece), nullptr);
        }
      }
      at = quote + 2;
      return true;
    }
  }

  template <class Sink>
  bool Finish(std::int64_t column, Sink& sink) {
    if constexpr (Sink::kWantsValues) sink.Field(column, value_, &value_);
    return false;
  }

  LineCursor& cursor_;
  const DelimiterMatcher& delimiter_;
  std::string_view text_;
  std::size_t next_quote_ = 0;  // index of the next quote in the text, or its size
  bool quote_known_ = false;
  std::string value_;
  CountingSink counter_;
};

}  // namespace tolva::textdata

#endif  // TOLVA_SRC_TEXTDATA_ROW_SPLITTER_H_
