// The three delimited readers through the public members, over the in-memory
// file system, with a host that can cancel from inside a progress event.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

const char* const kFile = "/data/table.csv";

class ReadersTest : public ::testing::Test, public HostContainer, public Tolva2011RegisterEvents {
 protected:
  ReadersTest() : c(Services(), this, this) {}
  platform::Services Services() {
    platform::Services s;
    s.files = fs;
    return s;
  }
  // Cancels the read at the event named `cancel_at` that reports one record.
  void ReadWriteProgress(std::string& message, Long& records) override {
    if (message == cancel_at && records == 1) c.ReadWriteCancel();
  }
  std::shared_ptr<fakes::FakeFileSystem> fs = std::make_shared<fakes::FakeFileSystem>();
  std::string cancel_at;
  Tolva2011Register c;
};

// A rows x columns array with every cell `fill`, so untouched cells show.
HostArray<std::string> Filled(Long rows, Long columns, const std::string& fill = "~") {
  auto a = HostArray<std::string>::TwoDim(1, rows, 1, columns);
  for (Long r = 1; r <= rows; ++r)
    for (Long k = 1; k <= columns; ++k) a.Store(r, k, fill);
  return a;
}

// The array as "a|b/c|d": cells by "|", rows by "/", trailing untouched rows left out.
std::string Grid(const HostArray<std::string>& a, Long rows, Long columns) {
  std::string out, untouched = "~";
  for (Long k = 2; k <= columns; ++k) untouched += "|~";
  std::vector<std::string> lines;
  for (Long r = 1; r <= rows; ++r) {
    std::string line;
    for (Long k = 1; k <= columns; ++k) line += (k > 1 ? "|" : "") + *a.At(r, k);
    lines.push_back(line);
  }
  while (!lines.empty() && lines.back() == untouched) lines.pop_back();
  for (const auto& line : lines) out += (out.empty() ? "" : "/") + line;
  return out;
}

TEST_F(ReadersTest, ArrayReaderSplitsFieldsAndRowsLikeTheSizeTest) {
  struct Row {
    const char* label;
    std::string text, delimiter, grid;
  } rows[] = {
      {"plain row keeps a trailing empty field", "a,b,\r\n", ",", "a|b||~|~"},
      {"quoted row drops the trailing empty field", "\"a\",b,\r\n", ",", "a|b|~|~|~"},
      {"character after a closing quote is skipped", "\"a\"b,c\r\n", ",", "a||c|~|~"},
      {"field spans two lines, joined by CR LF", "\"one\r\ntwo\",3\r\nx,y\r\n", ",", "one\r\ntwo|3|~|~|~/x|y|~|~|~"},
      {"empty lines are not rows", "a\r\n\r\n\r\nb,c\r\n", ",", "a|~|~|~|~/b|c|~|~|~"},
      {"CR alone ends lines", "ab\rcd\r", ",", "ab|~|~|~|~/cd|~|~|~|~"},
      {"LF CR is one line end", "ab\n\rcd", ",", "ab|~|~|~|~/cd|~|~|~|~"},
      {"a one-character last line after CR LF is lost", "a,b\r\nc", ",", "a|b|~|~|~"},
      {"delimiter letters match in either case", "1x2X3\r\n", "x", "1|2|3|~|~"},
      {"long delimiter: matched at its start, tail stays", "a;;b;;c\r\n", ";;", "a|;b|;c|~|~"},
  };
  for (const auto& r : rows) {
    fs->AddFile(kFile, r.text);
    auto a = Filled(5, 5);
    Long rr = 0, rc = 0, ar = 0, ac = 0, sr = -1, sc = -1;
    std::string error;
    EXPECT_EQ(c.ReadFileToArray(kFile, a, 5, 5, rr, rc, ar, ac, error, r.delimiter, kFalse), kTrue) << r.label;
    EXPECT_EQ(Grid(a, 5, 5), r.grid) << r.label;
    EXPECT_EQ(c.ReadFileToArrayGetSize(kFile, sr, sc, error, r.delimiter), kTrue) << r.label;
    EXPECT_EQ(std::vector<Long>({sr, sc}), std::vector<Long>({ar, ac})) << r.label << ": size test disagrees";
  }
}

// Rows of widths 60 down to 21 (or up from 21 to 60), each line ended by
// `end`: placed in the middle of about 9 MiB of one-field rows, every
// TestRows near the middle has its own answer.
std::string SlopingRows(const std::string& end, bool narrowing = true) {
  std::string rows;
  for (int k = 0; k < 40; ++k) rows += std::string(static_cast<std::size_t>(narrowing ? 59 - k : 20 + k), ',') + end;
  return rows;
}

// About 9 MiB of numbered one-field rows with `middle` in the middle; the
// number of rows before it is left in `first_half_rows`.
std::string LargeText(const std::string& middle, const std::string& end, Long& first_half_rows) {
  std::string half;
  for (first_half_rows = 0; half.size() < (9u << 19); ++first_half_rows) {
    const std::string number = std::to_string(first_half_rows);
    half += std::string(8 - number.size(), '0') + number + std::string(240, 'f') + end;
  }
  return half + middle + half;
}

struct LargeTextRow {
  const char* label;
  std::string middle, end;
};
std::vector<LargeTextRow> LargeTextRows() {
  std::string quoted_lines = "q,\"open\r\n";
  for (int i = 0; i < 400; ++i) quoted_lines += "in,side\r\n";
  return {
      {"CR LF", SlopingRows("\r\n"), "\r\n"},
      {"LF only, widest row past the middle", SlopingRows("\n", false), "\n"},
      {"wide rows only past the middle",
       [] {
         std::string narrow;
         for (int i = 0; i < 4000; ++i) narrow += "x\n";
         return narrow;
       }() +
           SlopingRows("\n", false),
       "\n"},
      {"CR only", SlopingRows("\r"), "\r"},
      {"empty lines", std::string(200, '\n') + SlopingRows("\n\n"), "\n"},
      {"a quoted field's lines across the middle",
       SlopingRows("\r\n") + quoted_lines + "shut\",2,3\r\n" + SlopingRows("\r\n", false), "\r\n"},
  };
}

// Without a host the readers may take the two halves of a large text at
// once; they must find what one walk from the top finds, wherever the
// middle falls and whatever TestRows or MaxRows leaves out.
TEST_F(ReadersTest, SizeTestOfALargeTextAgreesWithOneWalk) {
  Tolva2011Register alone(Services(), nullptr, nullptr);
  for (const auto& r : LargeTextRows()) {
    Long first_half_rows = 0;
    fs->AddFile(kFile, LargeText(r.middle, r.end, first_half_rows));
    for (Long test_rows = first_half_rows - 2; test_rows < first_half_rows + 45; test_rows += 3) {
      const Long counted_from = test_rows == first_half_rows - 2 ? 0 : test_rows;
      Long one_rows = 0, one_columns = 0, two_rows = -1, two_columns = -1;
      std::string error;
      c.ReadFileToArrayGetSize(kFile, one_rows, one_columns, error, ",", counted_from);
      alone.ReadFileToArrayGetSize(kFile, two_rows, two_columns, error, ",", counted_from);
      ASSERT_EQ(std::vector<Long>({two_rows, two_columns}), std::vector<Long>({one_rows, one_columns}))
          << r.label << ", TestRows " << counted_from;
    }
  }
}

TEST_F(ReadersTest, StoringReadersOfALargeTextAgreeWithOneWalk) {
  Tolva2011Register alone(Services(), nullptr, nullptr);
  const auto cells = [](const HostArray<std::string>& a, Long rows) {
    std::vector<std::string> all;
    for (Long i = 1; i <= rows; ++i)
      for (Long k = 1; k <= 3; ++k) all.push_back(*a.At(i, k));
    return all;
  };
  for (const auto& r : LargeTextRows()) {
    Long half = 0;
    fs->AddFile(kFile, LargeText(r.middle, r.end, half));
    const Long rows = 2 * half + 800;
    for (const Long limit : {rows, half + 20}) {
      std::vector<Long> counts[2];
      std::vector<std::string> stored[2];
      Tolva2011Register* readers[2] = {&c, &alone};
      for (int k = 0; k < 2; ++k) {
        auto array = HostArray<std::string>::TwoDim(1, rows, 1, 3), names = HostArray<std::string>::OneDim(1, 3);
        Long rr = 0, rc = 0, ar = 0, ac = 0, nr = 0, nf = 0;
        std::string error;
        readers[k]->ReadFileToArray(kFile, array, limit, 3, rr, rc, ar, ac, error);
        stored[k] = cells(array, rows);
        readers[k]->ReadFileToCSVDatabase(kFile, names, array, half - 5, limit, 2, 3, nr, nf, error);
        counts[k] = {rr, rc, ar, ac, nr, nf};
        for (const auto& cell : cells(array, rows)) stored[k].push_back(cell);
        stored[k].push_back(*names.At(1) + "|" + *names.At(2));
      }
      ASSERT_EQ(counts[1], counts[0]) << r.label << ", limit " << limit;
      ASSERT_TRUE(stored[1] == stored[0]) << r.label << ", limit " << limit;
    }
  }
}

TEST_F(ReadersTest, ArrayReaderLimitsAndCounts) {
  struct Row {
    const char* label;
    std::string text;
    Long max_rows, max_columns;
    Boolean result;
    std::vector<Long> counts;  // returned rows, returned columns, actual rows, actual columns
    std::string grid;
  } rows[] = {
      {"rows past MaxRows counted only", "1\r\n2\r\n3\r\n4\r\n5\r\n", 2, 3, kTrue, {2, 1, 5, 1}, "1|~|~/2|~|~"},
      {"values trimmed of blanks only", " a , \tb \r\n", 3, 3, kTrue, {1, 2, 1, 2}, "a|\tb|~"},
      {"only empty lines: no row", "\r\n\r\n\r\n", 3, 3, kFalse, {0, 77, 0, 0}, ""},
      {"negative limits return 0, not a negative count", "a,b\r\n", -4, -2, kTrue, {0, 0, 1, 0}, ""},
  };
  for (const auto& r : rows) {
    fs->AddFile(kFile, r.text);
    auto a = Filled(3, 3);
    Long rr = 77, rc = 77, ar = 77, ac = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToArray(kFile, a, r.max_rows, r.max_columns, rr, rc, ar, ac, error, ",", kTrue), r.result)
        << r.label;
    EXPECT_EQ(error, "") << r.label;
    EXPECT_EQ(std::vector<Long>({rr, rc, ar, ac}), r.counts) << r.label;
    EXPECT_EQ(Grid(a, 3, 3), r.grid) << r.label;
  }
}

// Short values are copied into cells in fixed blocks: each cell must still
// get exactly its value, whatever its length, whatever the cell held (a
// long value, or nothing, as in a fresh array), and at the very end of the
// file. The database arrays start at column 0, which no field reaches.
TEST_F(ReadersTest, CellsHoldExactlyTheirValues) {
  const std::string held(40, '#');
  const std::vector<std::string> first = {
      "", "a", std::string(15, 'b'), std::string(16, 'c'), std::string(17, 'd'), std::string(30, 'e')};
  const std::vector<std::string> last = {std::string(15, 'h'), std::string(14, 'g'), "f", "", "", ""};
  fs->AddFile(kFile, first[0] + "," + first[1] + "," + first[2] + "," + first[3] + "," + first[4] + "," + first[5] +
                         "\r\n" + last[0] + "," + last[1] + "," + last[2]);
  auto array = HostArray<std::string>::TwoDim(1, 2, 1, 6), fresh = array;
  auto names = HostArray<std::string>::OneDim(0, 6), values = HostArray<std::string>::TwoDim(1, 1, 0, 6);
  for (Long k = 0; k <= 6; ++k) {
    array.Store(1, k, held), array.Store(2, k, held), names.Store(k, held), values.Store(1, k, held);
  }
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToArray(kFile, array, 2, 6, rr, rc, ar, ac, error), kTrue);
  ASSERT_EQ(c.ReadFileToArray(kFile, fresh, 2, 6, rr, rc, ar, ac, error), kTrue);
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 1, 1, 1, 6, rr, rc, error), kTrue);
  EXPECT_EQ(*names.At(0) + *values.At(1, 0), held + held);
  for (Long k = 1; k <= 6; ++k) {
    const std::string& want_last = k <= 3 ? last[k - 1] : held;
    EXPECT_EQ(*array.At(1, k), first[k - 1]) << k;
    EXPECT_EQ(*fresh.At(1, k), first[k - 1]) << k;
    EXPECT_EQ(*array.At(2, k), want_last) << k;
    EXPECT_EQ(*names.At(k), first[k - 1]) << k;
    EXPECT_EQ(*values.At(1, k), want_last) << k;
  }
}

// Without a host the readers trim values as they store them and leave out
// what needs no second pass; the cells must end as a host sees them after
// the pass, untouched cells in the trimmed range included.
TEST_F(ReadersTest, ReadersWithoutAHostTrimLikeThePass) {
  Tolva2011Register alone(Services(), nullptr, nullptr);
  const struct {
    const char* label;
    std::string text;
    Long max_columns;
    std::string values;  // the database's values, as both must leave them
  } rows[] = {
      {"every row full", " a , b \r\n c ,d \r\n", 2, "c|d| ~ /~|~| ~ /~|~| ~ /~|~| ~ "},
      {"a narrow row leaves host cells to the pass", " a , b , c \r\n d \r\n", 3, "d|~|~"},
      {"a field built across lines", "\" x \r\n y \", z \r\n w , v \r\n", 2, "w|v| ~ /~|~| ~ /~|~| ~ /~|~| ~ "},
      {"fewer columns than the widest", " a , b , c \r\n", 2, "~|~| ~ /~|~| ~ /~|~| ~ /~|~| ~ "},
  };
  for (const auto& r : rows) {
    fs->AddFile(kFile, r.text);
    std::string seen[2];
    Tolva2011Register* readers[2] = {&c, &alone};
    for (int k = 0; k < 2; ++k) {
      auto array = Filled(4, 3, " ~ "), values = Filled(4, 3, " ~ ");
      auto names = HostArray<std::string>::OneDim(1, 3);
      for (Long f = 1; f <= 3; ++f) names.Store(f, " ~ ");
      Long rr = 0, rc = 0, ar = 0, ac = 0;
      std::string error;
      readers[k]->ReadFileToArray(kFile, array, 4, r.max_columns, rr, rc, ar, ac, error);
      readers[k]->ReadFileToCSVDatabase(kFile, names, values, 1, 4, 1, r.max_columns, rr, rc, error);
      seen[k] = Grid(array, 4, 3) + " # " + *names.At(1) + "|" + *names.At(2) + "|" + *names.At(3) + " # ";
      EXPECT_EQ(Grid(values, 4, 3), r.values) << r.label << (k ? ", no host" : "");
    }
    EXPECT_EQ(seen[1], seen[0]) << r.label;
  }
}

TEST_F(ReadersTest, CancelFromTheProgressHandlerStopsAfterTheRowInHand) {
  fs->AddFile(kFile, "a\r\nb\r\nc\r\nd\r\n");
  c.ReadWriteIncrement(1);
  auto a = Filled(4, 1);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  cancel_at = "Extracting Values";
  EXPECT_EQ(c.ReadFileToArray(kFile, a, 4, 1, rr, rc, ar, ac, error), kFalse);
  EXPECT_EQ(error + " " + Grid(a, 4, 1) + " " + std::to_string(ar), "Read Interrupted. a 1");
}

TEST_F(ReadersTest, CsvDatabaseCopiesTheRequestedRanges) {
  fs->AddFile(kFile, "Name,Town,Age\r\n\r\nAnn,Leeds,31\r\n\"Bo, Jr\",\"York\r\nNorth\",42\r\nCy,Hull,\"5\"\"7\"\r\n");
  auto names = HostArray<std::string>::OneDim(1, 3), values = Filled(4, 3);
  names.Store(3, "~");
  Long number_records = 0, number_fields = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 2, 3, 1, 2, number_records, number_fields, error), kTrue);
  EXPECT_EQ(std::vector<Long>({number_records, number_fields}), std::vector<Long>({2, 2}));
  EXPECT_EQ(*names.At(1) + "|" + *names.At(2) + "|" + *names.At(3), "Name|Town|~");
  EXPECT_EQ(Grid(values, 4, 3), "Bo, Jr|York\r\nNorth|~/Cy|Hull|~");

  // Reversed ranges are counted from the arguments as given (3 to 1 is -1)
  // and store nothing.
  values = Filled(4, 3);
  names.Store(1, "~");
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 3, 1, 3, 1, number_records, number_fields, error), kTrue);
  EXPECT_EQ(std::vector<Long>({number_records, number_fields}), std::vector<Long>({-1, -1}));
  EXPECT_EQ(*names.At(1) + *names.At(3) + Grid(values, 4, 3), "~~" + Grid(Filled(4, 3), 4, 3));
}

TEST_F(ReadersTest, EveryReaderRefusesAnEmptyDelimiterWithOneText) {
  fs->AddFile(kFile, "a,b\r\n");
  std::string e1, e2, e3;
  Long a = 0, b = 0, d = 0, e = 0;
  auto array = Filled(2, 2), names = HostArray<std::string>::OneDim(1, 2);
  EXPECT_EQ(c.ReadFileToArrayGetSize(kFile, a, b, e1, ""), kFalse);
  EXPECT_EQ(c.ReadFileToArray(kFile, array, 2, 2, a, b, d, e, e2, ""), kFalse);
  EXPECT_EQ(c.ReadFileToCSVDatabase(kFile, names, array, 1, 2, 1, 2, a, b, e3, ""), kFalse);
  EXPECT_EQ(e1 + "|" + e2 + "|" + e3,
            "Delimiter has not been defined.|Delimiter has not been defined.|"
            "Delimiter has not been defined.");
}

}  // namespace
}  // namespace tolva
