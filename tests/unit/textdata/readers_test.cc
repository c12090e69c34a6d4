// The three delimited readers through the public members, over the in-memory
// file system, with a host that records every progress event and can cancel
// from inside it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

const char* const kFile = "/data/table.csv";

class RecordingHost : public HostContainer, public Tolva2011RegisterEvents {
 public:
  void ReadWriteProgress(std::string& message, Long& records) override {
    events += (events.empty() ? "" : ", ") + message + ":" + std::to_string(records);
    if (on_progress) on_progress(message, records);
    message = "changed by the handler";  // the next event must not see this
    records = -99;
  }
  void DoEvents() override { ++yields; }
  std::string events;
  std::function<void(const std::string&, Long)> on_progress;
  int yields = 0;
};

class ReadersTest : public ::testing::Test {
 protected:
  ReadersTest() : fs(std::make_shared<fakes::FakeFileSystem>()), c(Services(), &host, &host) {}
  platform::Services Services() {
    platform::Services s;
    s.files = fs;
    return s;
  }
  std::shared_ptr<fakes::FakeFileSystem> fs;
  RecordingHost host;
  Tolva2011Register c;
};

// A rows x columns array (rows 0: a list of `columns`) with every cell "~", so untouched cells show.
HostArray<std::string> Filled(Long rows, Long columns) {
  auto a = rows ? HostArray<std::string>::TwoDim(1, rows, 1, columns) : HostArray<std::string>::OneDim(1, columns);
  for (Long r = rows ? 1 : 0; r <= rows; ++r)
    for (Long k = 1; k <= columns; ++k) rows ? a.Store(r, k, "~") : a.Store(k, "~");
  return a;
}

// The array as "a|b/c|d": cells by "|", rows by "/", trailing untouched rows left out.
std::string Grid(const HostArray<std::string>& a, Long rows, Long columns) {
  std::vector<std::string> lines;
  for (Long r = rows ? 1 : 0; r <= rows; ++r) {
    std::string line;
    for (Long k = 1; k <= columns; ++k) {
      const std::string* cell = rows ? a.At(r, k) : a.At(k);
      line += (k > 1 ? "|" : "") + (cell ? *cell : "<none>");
    }
    lines.push_back(line);
  }
  std::string untouched = "~";
  for (Long k = 2; k <= columns; ++k) untouched += "|~";
  while (!lines.empty() && lines.back() == untouched) lines.pop_back();
  std::string out;
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
      {"quoted field holding the delimiter", "\"x,y\",z\r\n", ",", "x,y|z|~|~|~"},
      {"doubled quote reads as one", "\"say \"\"hi\"\"\",2\r\n", ",", "say \"hi\"|2|~|~|~"},
      {"empty quoted field", "\"\",x\r\n", ",", "|x|~|~|~"},
      {"four quotes are one quote", "\"\"\"\"\r\n", ",", "\"|~|~|~|~"},
      {"quote inside an unquoted field is literal", "a,b\"c,d\r\n", ",", "a|b\"c|d|~|~"},
      {"quote in an unquoted last field, trailing delimiter", "a,b\"c,\r\n", ",", "a|b\"c|~|~|~"},
      {"character after a closing quote is skipped", "\"a\"b,c\r\n", ",", "a||c|~|~"},
      {"field spans two lines, joined by CR LF", "\"one\r\ntwo\",3\r\nx,y\r\n", ",", "one\r\ntwo|3|~|~|~/x|y|~|~|~"},
      {"LF line break inside a field becomes CR LF", "\"one\ntwo\",3\nx,y\n", ",", "one\r\ntwo|3|~|~|~/x|y|~|~|~"},
      {"empty lines inside a field are kept", "\"a\r\n\r\nb\",c\r\n", ",", "a\r\n\r\nb|c|~|~|~"},
      {"quote never closes: runs to the end", "x,\"open\r\nmore\r\nrest", ",", "x|open\r\nmore\r\nrest|~|~|~"},
      {"unclosed quote on the last line", "a,b\r\n\"tail", ",", "a|b|~|~|~/tail|~|~|~|~"},
      {"opening quote at the end of the line", "a,\"\r\nbc\"\r\n", ",", "a|\r\nbc|~|~|~"},
      {"empty lines are not rows", "a\r\n\r\n\r\nb,c\r\n", ",", "a|~|~|~|~/b|c|~|~|~"},
      {"a one-character last line after CR LF is lost", "a,b\r\nc", ",", "a|b|~|~|~"},
      {"LF CR is one line end", "ab\n\rcd", ",", "ab|~|~|~|~/cd|~|~|~|~"},
      {"delimiter letters match in either case", "1x2X3\r\n", "x", "1|2|3|~|~"},
      {"upper-case delimiter letter", "1x2X3\r\n", "X", "1|2|3|~|~"},
      {"long delimiter: matched at its start, tail stays", "a;;b;;c\r\n", ";;", "a|;b|;c|~|~"},
      {"long delimiter in a quoted row", "\"q\";;b\r\n", ";;", "q|;b|~|~|~"},
      {"long delimiter that does not fit at the end", "ab;\r\n", ";;", "ab;|~|~|~|~"},
      {"tab delimiter", "a\tb\r\n", "\t", "a|b|~|~|~"},
      {"only delimiters", ",,,,\r\n", ",", "||||"},
      {"NUL bytes in values", std::string("a\0,b\r\n", 6), ",", std::string("a\0|b|~|~|~", 10)},
      {"only quotes", "\"\"\"\"\"\"\"", ",", "\"\"\"|~|~|~|~"},
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

TEST_F(ReadersTest, ArrayReaderLimitsAndCounts) {
  struct Row {
    const char* label;
    std::string text;
    Long max_rows, max_columns;
    Boolean trim, result;
    std::vector<Long> counts;  // returned rows, returned columns, actual rows, actual columns
    std::string grid;
  } rows[] = {
      {"rows past MaxRows counted only", "1\r\n2\r\n3\r\n4\r\n5\r\n", 2, 3, kTrue, kTrue, {2, 1, 5, 1}, "1|~|~/2|~|~"},
      {"wider than MaxColumns", "a,b,c,d,e\r\n", 3, 2, kTrue, kTrue, {1, 2, 1, 2}, "a|b|~"},
      {"width of rows past MaxRows is ignored", "a\r\nb,c,d\r\n", 1, 3, kTrue, kTrue, {1, 1, 2, 1}, "a|~|~"},
      {"values trimmed of blanks only", " a , \tb \r\n", 3, 3, kTrue, kTrue, {1, 2, 1, 2}, "a|\tb|~"},
      {"1 is not true: no trimming", " a , b \r\n", 3, 3, 1, kTrue, {1, 2, 1, 2}, " a | b |~"},
      {"only empty lines: no row", "\r\n\r\n\r\n", 3, 3, kTrue, kFalse, {0, 77, 0, 0}, ""},
      {"MaxRows 0 stores nothing", "a,b\r\nc,d\r\n", 0, 3, kTrue, kTrue, {0, 0, 2, 0}, ""},
      {"negative limits return 0, not a negative count", "a,b\r\n", -4, -2, kTrue, kTrue, {0, 0, 1, 0}, ""},
  };
  for (const auto& r : rows) {
    fs->AddFile(kFile, r.text);
    auto a = Filled(3, 3);
    Long rr = 77, rc = 77, ar = 77, ac = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToArray(kFile, a, r.max_rows, r.max_columns, rr, rc, ar, ac, error, ",", r.trim), r.result)
        << r.label;
    EXPECT_EQ(error, "") << r.label;
    EXPECT_EQ(std::vector<Long>({rr, rc, ar, ac}), r.counts) << r.label;
    EXPECT_EQ(Grid(a, 3, 3), r.grid) << r.label;
  }
}

TEST_F(ReadersTest, ArraysOfTheWrongShapeReceiveNothingButTheCountsDescribeTheFile) {
  fs->AddFile(kFile, "a,b\r\nc,d\r\ne,f\r\n");
  HostArray<std::string> arrays[] = {HostArray<std::string>::OneDim(1, 10),
                                     HostArray<std::string>({{1, 3}, {1, 3}, {1, 3}}), HostArray<std::string>(),
                                     HostArray<std::string>::TwoDim(5, 9, 5, 9)};
  for (auto& a : arrays) {
    Long rr = 0, rc = 0, ar = 0, ac = 0;
    std::string error;
    EXPECT_EQ(c.ReadFileToArray(kFile, a, 10, 10, rr, rc, ar, ac, error), kTrue) << a.Rank();
    EXPECT_EQ(std::vector<Long>({rr, rc, ar, ac}), std::vector<Long>({3, 2, 3, 2})) << a.Rank();
    for (Long i = 0; i <= 10; ++i) {
      EXPECT_TRUE(!a.At(i) || a.At(i)->empty()) << a.Rank();
      for (Long j = 0; j <= 10; ++j) EXPECT_TRUE(!a.At(i, j) || a.At(i, j)->empty()) << a.Rank();
    }
  }
  auto small = Filled(2, 1);  // smaller than the file: takes what fits
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  EXPECT_EQ(c.ReadFileToArray(kFile, small, 10, 10, rr, rc, ar, ac, error), kTrue);
  EXPECT_EQ(Grid(small, 2, 1), "a/c");
}

TEST_F(ReadersTest, SizeTestCountsRowsAndTheWidestRow) {
  struct Row {
    const char* label;
    std::string text, delimiter;
    Long test_rows, rows, columns;
  } rows[] = {
      {"widest row", "a\r\nb,c,d\r\ne,f\r\n", ",", 0, 3, 3},
      {"TestRows 1 ignores the first row's width", "a,b,c,d\r\ne,f\r\n", ",", 1, 2, 2},
      {"TestRows beyond the file: width 0", "a,b\r\nc,d\r\n", ",", 5, 2, 0},
      {"negative TestRows measures every row", "a,b,c\r\n", ",", -1, 1, 3},
      {"multi-line field: one row", "\"a\r\n\r\nb\",c\r\nd\r\n", ",", 0, 2, 2},
      {"row swallowed by a quoted field in a passed-over row", "\"a\r\nb,c,d,e\"\r\nx,y\r\n", ",", 1, 2, 2},
      {"semicolon", "a;b;c\r\n", ";", 0, 1, 3},
      {"no line end at all", "abc,def", ",", 0, 1, 2},
  };
  for (const auto& r : rows) {
    fs->AddFile(kFile, r.text);
    Long actual_rows = 77, actual_columns = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToArrayGetSize(kFile, actual_rows, actual_columns, error, r.delimiter, r.test_rows), kTrue)
        << r.label;
    EXPECT_EQ(error, "") << r.label;
    EXPECT_EQ(std::vector<Long>({actual_rows, actual_columns}), std::vector<Long>({r.rows, r.columns})) << r.label;
  }
}

TEST_F(ReadersTest, ProgressEventsOfEachReader) {
  fs->AddFile(kFile, "a\r\nb\r\nc\r\nd\r\ne\r\n");
  c.ReadWriteIncrement(2);
  auto a = Filled(5, 1);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToArray(kFile, a, 5, 1, rr, rc, ar, ac, error), kTrue);
  EXPECT_EQ(host.events,
            "Reading File - table.csv:0, Reading File Starting:0, Extracting Values:0, Extracting Values:2, "
            "Extracting Values:4, Triming Values:0, Extracting Values:2, Extracting Values:4, Read Complete:5");
  EXPECT_EQ(host.yields, 4);

  host.events.clear();
  ASSERT_EQ(c.ReadFileToArrayGetSize(kFile, ar, ac, error), kTrue);
  EXPECT_EQ(host.events,
            "Testing File - table.csv:0, Testing File Starting:0, Testing Values:0, Testing Values:2, "
            "Testing Values:4, Test Complete:5");

  c.ReadWriteIncrement(1);
  host.events.clear();
  fs->AddFile("/data/db.csv", " A , B \r\n 1 , 2 \r\n 3 , 4 \r\n");
  auto names = Filled(0, 2), values = Filled(2, 2);
  ASSERT_EQ(c.ReadFileToCSVDatabase("/data/db.csv", names, values, 1, 2, 1, 2, rr, rc, error), kTrue);
  EXPECT_EQ(Grid(names, 0, 2) + "/" + Grid(values, 2, 2), "A|B/1|2/3|4");
  EXPECT_EQ(host.events,
            "Reading File - db.csv:0, Reading File Starting:0, Extracting Values:0, Extracting Values:0, "
            "Extracting Values:1, Extracting Values:2, Triming Values:0, Triming Values:1, Triming Values:2, "
            "Read Complete:2");

  // 0 or less counts as 1: an event after every row.
  for (Long increment : {0, -3}) {
    c.ReadWriteIncrement(increment);
    host.events.clear();
    ASSERT_EQ(c.ReadFileToArrayGetSize(kFile, ar, ac, error), kTrue);
    EXPECT_EQ(std::count(host.events.begin(), host.events.end(), ','), 3 + 5) << increment;
  }
}

TEST_F(ReadersTest, CancelFromTheProgressHandler) {
  fs->AddFile(kFile, "a\r\nb\r\nc\r\nd\r\n");
  c.ReadWriteIncrement(1);
  enum Reader { kSize, kArray, kDatabase };
  struct Row {
    const char* label;
    Reader reader;
    const char* cancel_at;  // the event after which the handler cancels
    Long at_records;        // ... when it reports this many records (-1: any)
    Boolean result;
    const char* error;
    const char* events_end;
  } rows[] = {
      {"size test, while testing", kSize, "Testing Values", -1, kFalse, "Test Interrupted.", "Testing Values:1"},
      {"array, while extracting", kArray, "Extracting Values", -1, kFalse, "Read Interrupted.", "Extracting Values:1"},
      {"array, after the first row", kArray, "Extracting Values", 1, kFalse, "Read Interrupted.", ""},
      {"array, while trimming", kArray, "Triming Values", -1, kTrue, "Read Interrupted.", "Extracting Values:1"},
      // A cancel before extraction starts is cleared when it starts.
      {"array, before extracting", kArray, "Reading File Starting", -1, kTrue, "", "Read Complete:4"},
      {"database, while extracting", kDatabase, "Extracting Values", -1, kFalse, "Read Interrupted.", ""},
      {"database, while trimming", kDatabase, "Triming Values", -1, kTrue, "Read Interrupted.", ""},
  };
  for (const auto& r : rows) {
    host.events.clear();
    host.on_progress = [&](const std::string& message, Long records) {
      if (message == r.cancel_at && (r.at_records < 0 || records == r.at_records)) c.ReadWriteCancel();
    };
    auto a = Filled(4, 1), names = Filled(0, 1);
    Long rr = 0, rc = 0, ar = 0, ac = 0;
    std::string error;
    const Boolean result = r.reader == kSize    ? c.ReadFileToArrayGetSize(kFile, ar, ac, error)
                           : r.reader == kArray ? c.ReadFileToArray(kFile, a, 4, 1, rr, rc, ar, ac, error)
                                                : c.ReadFileToCSVDatabase(kFile, names, a, 1, 3, 1, 1, rr, rc, error);
    EXPECT_EQ(result, r.result) << r.label;
    EXPECT_EQ(error, r.error) << r.label;
    const std::string end = r.events_end;
    EXPECT_EQ(host.events.substr(host.events.size() - std::min(end.size(), host.events.size())), end) << r.label;
    if (r.at_records == 1) {
      EXPECT_EQ(Grid(a, 4, 1) + " " + std::to_string(ar), "a 1") << "stops after the first row";
    }
  }
}

TEST_F(ReadersTest, CsvDatabaseCopiesTheRequestedRanges) {
  fs->AddFile(kFile, "Name,Town,Age\r\n\r\nAnn,Leeds,31\r\n\"Bo, Jr\",\"York\r\nNorth\",42\r\nCy,Hull,\"5\"\"7\"\r\n");
  struct Row {
    const char* label;
    Long first_record, last_record, first_field, last_field, number_records, number_fields;
    std::string names_and_values;  // names, then the 4 x 3 values
  } rows[] = {
      {"records 2 and 3, fields 1 and 2", 2, 3, 1, 2, 2, 2, "Name|Town|~/Bo, Jr|York\r\nNorth|~/Cy|Hull|~"},
      {"LastRecord 0 reads only the names", 1, 0, 1, 3, 0, 3, "Name|Town|Age"},
      {"more records asked for than the file holds", 1, 10, 1, 3, 10, 3,
       "Name|Town|Age/Ann|Leeds|31/Bo, Jr|York\r\nNorth|42/Cy|Hull|5\"7"},
      {"FirstField 0 counts an extra field but stores from 1", 1, 1, 0, 3, 1, 4, "Name|Town|Age/Ann|Leeds|31"},
      {"a field range from the second field", 3, 3, 2, 3, 1, 2, "Town|Age|~/Hull|5\"7|~"},
      {"FirstRecord below 1 starts at record 1", -5, 2, 1, 1, 2, 1, "Name|~|~/Ann|~|~/Bo, Jr|~|~"},
      {"first record after the last: nothing, count 0", 3, 2, 1, 3, 0, 3, "Name|Town|Age"},
      {"first field after the last: nothing, count 0", 1, 3, 3, 1, 3, 0, ""},
  };
  for (const auto& r : rows) {
    auto names = Filled(0, 3), values = Filled(4, 3);
    Long number_records = 77, number_fields = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, r.first_record, r.last_record, r.first_field, r.last_field,
                                      number_records, number_fields, error),
              kTrue)
        << r.label;
    EXPECT_EQ(error, "") << r.label;
    EXPECT_EQ(std::vector<Long>({number_records, number_fields}),
              std::vector<Long>({r.number_records, r.number_fields}))
        << r.label;
    std::string got = Grid(names, 0, 3) + "/" + Grid(values, 4, 3);
    while (!got.empty() && got.back() == '/') got.pop_back();
    EXPECT_EQ(got, r.names_and_values) << r.label;
  }
  // Huge ranges on a small array finish at once; a count that does not fit is the largest Long.
  auto names = Filled(0, 2), values = Filled(2, 2);
  Long nr = 0, nf = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 1, 2147483647, -2147483647 - 1, 2147483647, nr, nf, error),
            kTrue);
  EXPECT_EQ(std::vector<Long>({nr, nf}), std::vector<Long>({2147483647, 2147483647}));
}

TEST_F(ReadersTest, FailuresCarryTheTextsOfTheWholeFileRead) {
  fs->AddFile("/data/empty.csv", "");
  fs->AddFile("/data/locked.csv", "a,b\r\n");
  fs->Fail(fakes::FakeFileSystem::Op::kRead, "/data/locked.csv", fakes::FakeFileSystem::PermissionDenied());
  fs->AddFile("/data/ok.csv", "a,b\r\n");
  struct Row {
    std::string path, delimiter;
    const char* error;  // nullptr: whatever the whole-file read says
  } rows[] = {
      {"", ",", nullptr},
      {"/nowhere/x.csv", ",", nullptr},
      {"/data/missing.csv", ",", nullptr},
      {"/data/empty.csv", ",", nullptr},
      {"/data/locked.csv", ",", nullptr},
      {"/data/ok.csv", "", "Delimiter has not been defined."},
  };
  for (const auto& r : rows) {
    std::string expected = r.error ? r.error : "";
    if (!r.error) c.ReadFileFull(r.path, expected);
    ASSERT_FALSE(expected.empty()) << r.path;
    std::string e1, e2, e3;
    Long a = 0, b = 0, d = 0, e = 0;
    auto array = Filled(2, 2), names = Filled(0, 2);
    EXPECT_EQ(c.ReadFileToArrayGetSize(r.path, a, b, e1, r.delimiter), kFalse) << r.path;
    EXPECT_EQ(c.ReadFileToArray(r.path, array, 2, 2, a, b, d, e, e2, r.delimiter), kFalse) << r.path;
    EXPECT_EQ(c.ReadFileToCSVDatabase(r.path, names, array, 1, 2, 1, 2, a, b, e3, r.delimiter), kFalse) << r.path;
    EXPECT_EQ(e1 + "|" + e2 + "|" + e3, expected + "|" + expected + "|" + expected) << r.path;
  }
  Tolva2011Register bare(platform::Services{}, nullptr, nullptr);
  std::string error;
  Long a = 0, b = 0;
  EXPECT_EQ(bare.ReadFileToArrayGetSize("/data/ok.csv", a, b, error), kFalse);
}

}  // namespace
}  // namespace tolva
