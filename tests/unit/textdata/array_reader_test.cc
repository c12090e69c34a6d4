// ReadFileToArray and ReadFileToArrayGetSize through the public members.
#include <string>
#include <vector>

#include "readers_fixture.h"

namespace tolva::testing_textdata {
namespace {

const char* const kFile = "/data/table.csv";

using Cells = std::vector<std::vector<std::string>>;

// The array's contents over rows and columns 1..n, "~" for cells left as
// the test filled them.
Cells Contents(const HostArray<std::string>& a, Long rows, Long columns) {
  Cells out(static_cast<std::size_t>(rows));
  for (Long r = 1; r <= rows; ++r)
    for (Long col = 1; col <= columns; ++col) {
      const std::string* cell = a.At(r, col);
      out[static_cast<std::size_t>(r - 1)].push_back(cell ? *cell : "<none>");
    }
  return out;
}

HostArray<std::string> Filled(Long rows, Long columns) {
  auto a = HostArray<std::string>::TwoDim(1, rows, 1, columns);
  for (Long r = 1; r <= rows; ++r)
    for (Long col = 1; col <= columns; ++col) a.Store(r, col, "~");
  return a;
}

TEST_F(ReadersTest, ArrayReaderFillsAndCounts) {
  struct Row {
    const char* label;
    std::string text;
    Long max_rows, max_columns;
    Boolean trim;
    Boolean result;
    Long returned_rows, returned_columns, actual_rows, actual_columns;
    Cells cells;  // the first 3 x 3 cells of a 3 x 3 array
  };
  const Row rows[] = {
      {"plain row, trailing empty field",
       "a,b,\r\n",
       3,
       3,
       kTrue,
       kTrue,
       1,
       3,
       1,
       3,
       {{"a", "b", ""}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"quoted row, no trailing field",
       "\"a\",b,\r\n",
       3,
       3,
       kTrue,
       kTrue,
       1,
       2,
       1,
       2,
       {{"a", "b", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"more rows than MaxRows are counted, not stored",
       "1\r\n2\r\n3\r\n4\r\n55\r\n",
       2,
       3,
       kTrue,
       kTrue,
       2,
       1,
       5,
       1,
       {{"1", "~", "~"}, {"2", "~", "~"}, {"~", "~", "~"}}},
      {"wider than MaxColumns",
       "a,b,c,d,e\r\n",
       3,
       2,
       kTrue,
       kTrue,
       1,
       2,
       1,
       2,
       {{"a", "b", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"width of rows past MaxRows is ignored",
       "a\r\nb,c,d\r\n",
       1,
       3,
       kTrue,
       kTrue,
       1,
       1,
       2,
       1,
       {{"a", "~", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"values trimmed of blanks only",
       " a , \tb \r\n",
       3,
       3,
       kTrue,
       kTrue,
       1,
       2,
       1,
       2,
       {{"a", "\tb"}, {"~", "~"}, {"~", "~"}}},
      {"1 is not true: no trimming",
       " a , b \r\n",
       3,
       3,
       1,
       kTrue,
       1,
       2,
       1,
       2,
       {{" a ", " b "}, {"~", "~"}, {"~", "~"}}},
      {"multi-line quoted field is one row",
       "\"x\r\ny\",z\r\nw\r\n",
       3,
       3,
       kTrue,
       kTrue,
       2,
       2,
       2,
       2,
       {{"x\r\ny", "z"}, {"w", "~"}, {"~", "~"}}},
      {"only empty lines: no row",
       "\r\n\r\n\r\n",
       3,
       3,
       kTrue,
       kFalse,
       0,
       77,
       0,
       0,
       {{"~", "~", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"MaxRows 0 stores nothing",
       "a,b\r\nc,d\r\n",
       0,
       3,
       kTrue,
       kTrue,
       0,
       0,
       2,
       0,
       {{"~", "~", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"negative limits return 0, not a negative count",
       "a,b\r\n",
       -4,
       -2,
       kTrue,
       kTrue,
       0,
       0,
       1,
       0,
       {{"~", "~", "~"}, {"~", "~", "~"}, {"~", "~", "~"}}},
      {"LF-only file", "a,b\nc,d\n", 3, 3, kTrue, kTrue, 2, 2, 2, 2, {{"a", "b"}, {"c", "d"}, {"~", "~"}}},
      {"last row of one character after CR LF is not read",
       "a,b\r\nc",
       3,
       3,
       kTrue,
       kTrue,
       1,
       2,
       1,
       2,
       {{"a", "b"}, {"~", "~"}, {"~", "~"}}},
  };
  for (const Row& row : rows) {
    fs->AddFile(kFile, row.text);
    HostArray<std::string> a = Filled(3, 3);
    Long returned_rows = 77, returned_columns = 77, actual_rows = 77, actual_columns = 77;
    std::string error = "stale";
    const Boolean result = c.ReadFileToArray(kFile, a, row.max_rows, row.max_columns, returned_rows, returned_columns,
                                             actual_rows, actual_columns, error, ",", row.trim);
    EXPECT_EQ(result, row.result) << row.label;
    EXPECT_EQ(error, "") << row.label;
    EXPECT_EQ(returned_rows, row.returned_rows) << row.label;
    EXPECT_EQ(returned_columns, row.returned_columns) << row.label;
    EXPECT_EQ(actual_rows, row.actual_rows) << row.label;
    EXPECT_EQ(actual_columns, row.actual_columns) << row.label;
    const Long shown_columns = static_cast<Long>(row.cells[0].size());
    EXPECT_EQ(Contents(a, 3, shown_columns), row.cells) << row.label;
  }
}

TEST_F(ReadersTest, ArraysOfTheWrongShapeReceiveNothing) {
  fs->AddFile(kFile, "a,b\r\nc,d\r\ne,f\r\n");
  struct Row {
    const char* label;
    HostArray<std::string> array;
  };
  Row rows[] = {
      {"rank 1", HostArray<std::string>::OneDim(1, 10)},
      {"rank 3", HostArray<std::string>({{1, 3}, {1, 3}, {1, 3}})},
      {"rank 0", HostArray<std::string>()},
      {"bounds that start at 5", HostArray<std::string>::TwoDim(5, 9, 5, 9)},
  };
  for (Row& row : rows) {
    Long rr = 0, rc = 0, ar = 0, ac = 0;
    std::string error;
    EXPECT_EQ(c.ReadFileToArray(kFile, row.array, 10, 10, rr, rc, ar, ac, error), kTrue) << row.label;
    // The counts describe the file whatever the array could hold.
    EXPECT_EQ(ar, 3) << row.label;
    EXPECT_EQ(ac, 2) << row.label;
    EXPECT_EQ(rr, 3) << row.label;
    EXPECT_EQ(rc, 2) << row.label;
    for (Long i = 0; i <= 10; ++i) {
      if (const std::string* cell = row.array.At(i)) {
        EXPECT_EQ(*cell, "") << row.label;
      }
      for (Long j = 0; j <= 10; ++j)
        if (const std::string* cell = row.array.At(i, j)) {
          EXPECT_EQ(*cell, "") << row.label;
        }
    }
  }
  // An array smaller than the file takes what fits.
  auto small = HostArray<std::string>::TwoDim(1, 2, 1, 1);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  EXPECT_EQ(c.ReadFileToArray(kFile, small, 10, 10, rr, rc, ar, ac, error), kTrue);
  EXPECT_EQ(*small.At(1, 1), "a");
  EXPECT_EQ(*small.At(2, 1), "c");
}

TEST_F(ReadersTest, SizeTestCountsRowsAndWidestRow) {
  struct Row {
    const char* label;
    std::string text, delimiter;
    Long test_rows;
    Long rows, columns;
  };
  const Row rows[] = {
      {"widest row", "a\r\nb,c,d\r\ne,f\r\n", ",", 0, 3, 3},
      {"TestRows 1 ignores the first row's width", "a,b,c,d\r\ne,f\r\n", ",", 1, 2, 2},
      {"TestRows beyond the file: width 0", "a,b\r\nc,d\r\n", ",", 5, 2, 0},
      {"negative TestRows measures every row", "a,b,c\r\n", ",", -1, 1, 3},
      {"quoted rows agree with the array reader", "\"a,b\",c,\r\nd,e,\r\n", ",", 0, 2, 3},
      {"multi-line field: one row", "\"a\r\n\r\nb\",c\r\nd\r\n", ",", 0, 2, 2},
      {"row swallowed by a quoted field in a passed-over row", "\"a\r\nb,c,d,e\"\r\nx,y\r\n", ",", 1, 2, 2},
      {"semicolon", "a;b;c\r\n", ";", 0, 1, 3},
      {"only delimiters", ",,,,\r\n", ",", 0, 1, 5},
      {"only quotes", "\"\"\"\"\"\"\"", ",", 0, 1, 1},
      {"no line end at all", "abc,def", ",", 0, 1, 2},
  };
  for (const Row& row : rows) {
    fs->AddFile(kFile, row.text);
    Long actual_rows = 77, actual_columns = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToArrayGetSize(kFile, actual_rows, actual_columns, error, row.delimiter, row.test_rows), kTrue)
        << row.label;
    EXPECT_EQ(error, "") << row.label;
    EXPECT_EQ(actual_rows, row.rows) << row.label;
    EXPECT_EQ(actual_columns, row.columns) << row.label;
  }
}

TEST_F(ReadersTest, ProgressTextsOfTheArrayReaderAndSizeTest) {
  fs->AddFile(kFile, "a\r\nb\r\nc\r\nd\r\ne\r\n");
  c.ReadWriteIncrement(2);
  auto a = HostArray<std::string>::TwoDim(1, 5, 1, 1);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToArray(kFile, a, 5, 1, rr, rc, ar, ac, error), kTrue);
  const std::vector<std::pair<std::string, Long>> read_events = {
      {"Reading File - table.csv", 0}, {"Reading File Starting", 0}, {"Extracting Values", 0},
      {"Extracting Values", 2},        {"Extracting Values", 4},     {"Triming Values", 0},
      {"Extracting Values", 2},        {"Extracting Values", 4},     {"Read Complete", 5}};
  EXPECT_EQ(host.events, read_events);
  EXPECT_EQ(host.yields, 4);

  host.events.clear();
  ASSERT_EQ(c.ReadFileToArrayGetSize(kFile, ar, ac, error), kTrue);
  const std::vector<std::pair<std::string, Long>> size_events = {
      {"Testing File - table.csv", 0}, {"Testing File Starting", 0}, {"Testing Values", 0},
      {"Testing Values", 2},           {"Testing Values", 4},        {"Test Complete", 5}};
  EXPECT_EQ(host.events, size_events);

  // 0 or less counts as 1: an event after every row.
  for (Long increment : {0, -3}) {
    c.ReadWriteIncrement(increment);
    host.events.clear();
    ASSERT_EQ(c.ReadFileToArrayGetSize(kFile, ar, ac, error), kTrue);
    EXPECT_EQ(host.events.size(), 3u + 5u + 1u) << increment;
  }
}

TEST_F(ReadersTest, CancelFromTheProgressHandler) {
  fs->AddFile(kFile, "a\r\nb\r\nc\r\nd\r\n");
  c.ReadWriteIncrement(1);
  struct Row {
    const char* label;
    bool size_test;
    const char* cancel_at;  // the message after which the handler cancels
    Boolean result;
    const char* error;
    const char* last_event;
  };
  const Row rows[] = {
      {"size test, while testing", true, "Testing Values", kFalse, "Test Interrupted.", "Testing Values"},
      {"array, while extracting", false, "Extracting Values", kFalse, "Read Interrupted.", "Extracting Values"},
      {"array, while trimming", false, "Triming Values", kTrue, "Read Interrupted.", "Extracting Values"},
      // A cancel before extraction starts is cleared when it starts.
      {"array, before extracting", false, "Reading File Starting", kTrue, "", "Read Complete"},
  };
  for (const Row& row : rows) {
    host.events.clear();
    host.on_progress = [&](const std::string& message, Long) {
      if (message == row.cancel_at) c.ReadWriteCancel();
    };
    auto a = HostArray<std::string>::TwoDim(1, 4, 1, 1);
    Long rr = 0, rc = 0, ar = 0, ac = 0;
    std::string error;
    const Boolean result = row.size_test ? c.ReadFileToArrayGetSize(kFile, ar, ac, error)
                                         : c.ReadFileToArray(kFile, a, 4, 1, rr, rc, ar, ac, error);
    EXPECT_EQ(result, row.result) << row.label;
    EXPECT_EQ(error, row.error) << row.label;
    ASSERT_FALSE(host.events.empty()) << row.label;
    EXPECT_EQ(host.events.back().first, row.last_event) << row.label;
  }
  // Cancelling during the first "Extracting Values" with rows to go stops after the first row.
  host.events.clear();
  host.on_progress = [&](const std::string& message, Long records) {
    if (message == "Extracting Values" && records == 1) c.ReadWriteCancel();
  };
  auto a = HostArray<std::string>::TwoDim(1, 4, 1, 1);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  EXPECT_EQ(c.ReadFileToArray(kFile, a, 4, 1, rr, rc, ar, ac, error), kFalse);
  EXPECT_EQ(ar, 1);
  EXPECT_EQ(*a.At(2, 1), "");
}

}  // namespace
}  // namespace tolva::testing_textdata
