// ReadFileToCSVDatabase through the public member, and the failures the
// three delimited readers share.
#include <string>
#include <vector>

#include "readers_fixture.h"

namespace tolva::testing_textdata {
namespace {

const char* const kFile = "/data/people.csv";
const char* const kPeople =
    "Name,Town,Age\r\n"
    "\r\n"
    "Ann,Leeds,31\r\n"
    "\"Bo, Jr\",\"York\r\nNorth\",42\r\n"
    "Cy,Hull,\"5\"\"7\"\r\n";

std::vector<std::string> Row(const HostArray<std::string>& a, Long r, Long columns) {
  std::vector<std::string> out;
  for (Long f = 1; f <= columns; ++f) out.push_back(a.At(r, f) ? *a.At(r, f) : "<none>");
  return out;
}

TEST_F(ReadersTest, CsvDatabaseCopiesTheRequestedRanges) {
  using Strings = std::vector<std::string>;
  struct Case {
    const char* label;
    Long first_record, last_record, first_field, last_field;
    Long number_records, number_fields;
    Strings names;                // FieldNames(1..3)
    std::vector<Strings> values;  // FieldValues rows 1..4, columns 1..3
  };
  const Strings untouched = {"~", "~", "~"};
  const Case cases[] = {
      {"records 2 and 3, fields 1 and 2",
       2,
       3,
       1,
       2,
       2,
       2,
       {"Name", "Town", "~"},
       {{"Bo, Jr", "York\r\nNorth", "~"}, {"Cy", "Hull", "~"}, untouched, untouched}},
      {"LastRecord 0 reads only the names",
       1,
       0,
       1,
       3,
       0,
       3,
       {"Name", "Town", "Age"},
       {untouched, untouched, untouched, untouched}},
      {"more records asked for than the file holds",
       1,
       10,
       1,
       3,
       10,
       3,
       {"Name", "Town", "Age"},
       {{"Ann", "Leeds", "31"}, {"Bo, Jr", "York\r\nNorth", "42"}, {"Cy", "Hull", "5\"7"}, untouched}},
      {"FirstField 0 counts an extra field but stores from 1",
       1,
       1,
       0,
       3,
       1,
       4,
       {"Name", "Town", "Age"},
       {{"Ann", "Leeds", "31"}, untouched, untouched, untouched}},
      {"a field range from the second field",
       3,
       3,
       2,
       3,
       1,
       2,
       {"Town", "Age", "~"},
       {{"Hull", "5\"7", "~"}, untouched, untouched, untouched}},
      {"FirstRecord below 1 starts at record 1",
       -5,
       2,
       1,
       1,
       2,
       1,
       {"Name", "~", "~"},
       {{"Ann", "~", "~"}, {"Bo, Jr", "~", "~"}, untouched, untouched}},
      {"first record after the last: nothing, count 0",
       3,
       2,
       1,
       3,
       0,
       3,
       {"Name", "Town", "Age"},
       {untouched, untouched, untouched, untouched}},
      {"first field after the last: nothing, count 0",
       1,
       3,
       3,
       1,
       3,
       0,
       {"~", "~", "~"},
       {untouched, untouched, untouched, untouched}},
  };
  fs->AddFile(kFile, kPeople);
  for (const Case& k : cases) {
    auto names = HostArray<std::string>::OneDim(1, 3);
    auto values = HostArray<std::string>::TwoDim(1, 4, 1, 3);
    for (Long f = 1; f <= 3; ++f) {
      names.Store(f, "~");
      for (Long r = 1; r <= 4; ++r) values.Store(r, f, "~");
    }
    Long number_records = 77, number_fields = 77;
    std::string error = "stale";
    EXPECT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, k.first_record, k.last_record, k.first_field, k.last_field,
                                      number_records, number_fields, error),
              kTrue)
        << k.label;
    EXPECT_EQ(error, "") << k.label;
    EXPECT_EQ(number_records, k.number_records) << k.label;
    EXPECT_EQ(number_fields, k.number_fields) << k.label;
    Strings got_names;
    for (Long f = 1; f <= 3; ++f) got_names.push_back(*names.At(f));
    EXPECT_EQ(got_names, k.names) << k.label;
    for (Long r = 1; r <= 4; ++r) EXPECT_EQ(Row(values, r, 3), k.values[static_cast<std::size_t>(r - 1)]) << k.label;
  }
}

TEST_F(ReadersTest, CsvDatabaseTrimsAndReportsProgress) {
  fs->AddFile(kFile, " A , B \r\n 1 , 2 \r\n 3 , 4 \r\n");
  c.ReadWriteIncrement(1);
  auto names = HostArray<std::string>::OneDim(1, 2);
  auto values = HostArray<std::string>::TwoDim(1, 2, 1, 2);
  Long nr = 0, nf = 0;
  std::string error;
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 1, 2, 1, 2, nr, nf, error), kTrue);
  EXPECT_EQ(*names.At(1), "A");
  EXPECT_EQ(*values.At(2, 2), "4");
  const std::vector<std::string> expected = {"Reading File - people.csv",
                                             "Reading File Starting",
                                             "Extracting Values",
                                             "Extracting Values",
                                             "Extracting Values",
                                             "Extracting Values",
                                             "Triming Values",
                                             "Triming Values",
                                             "Triming Values",
                                             "Read Complete"};
  EXPECT_EQ(Messages(), expected);

  // Huge ranges on a small array finish at once and leave other cells alone.
  host.events.clear();
  ASSERT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 1, 2147483647, -2147483647 - 1, 2147483647, nr, nf, error),
            kTrue);
  EXPECT_EQ(nr, 2147483647);
  EXPECT_EQ(nf, 2147483647);  // the true count does not fit: the largest Long
}

TEST_F(ReadersTest, CsvDatabaseCancel) {
  fs->AddFile(kFile, kPeople);
  c.ReadWriteIncrement(1);
  struct Row {
    const char* label;
    const char* cancel_at;
    Boolean result;
    const char* error;
  };
  const Row rows[] = {
      {"while extracting", "Extracting Values", kFalse, "Read Interrupted."},
      {"while trimming", "Triming Values", kTrue, "Read Interrupted."},
  };
  for (const Row& row : rows) {
    host.on_progress = [&](const std::string& message, Long) {
      if (message == row.cancel_at) c.ReadWriteCancel();
    };
    auto names = HostArray<std::string>::OneDim(1, 3);
    auto values = HostArray<std::string>::TwoDim(1, 3, 1, 3);
    Long nr = 0, nf = 0;
    std::string error;
    EXPECT_EQ(c.ReadFileToCSVDatabase(kFile, names, values, 1, 3, 1, 3, nr, nf, error), row.result) << row.label;
    EXPECT_EQ(error, row.error) << row.label;
  }
}

TEST_F(ReadersTest, FailuresCarryTheTextsOfTheWholeFileRead) {
  fs->AddFile("/data/empty.csv", "");
  fs->AddFile("/data/locked.csv", "a,b\r\n");
  fs->Fail(fakes::FakeFileSystem::Op::kRead, "/data/locked.csv", fakes::FakeFileSystem::PermissionDenied());
  fs->AddFile("/data/ok.csv", "a,b\r\n");
  struct Row {
    const char* label;
    std::string path, delimiter;
    bool same_as_whole_file_read;
    const char* error;  // when not the same as the whole-file read
  };
  const Row rows[] = {
      {"empty name", "", ",", true, nullptr},
      {"missing directory", "/nowhere/x.csv", ",", true, nullptr},
      {"missing file", "/data/missing.csv", ",", true, nullptr},
      {"empty file", "/data/empty.csv", ",", true, nullptr},
      {"unreadable file", "/data/locked.csv", ",", true, nullptr},
      {"empty delimiter", "/data/ok.csv", "", false, "Delimiter has not been defined."},
  };
  for (const Row& row : rows) {
    std::string expected = row.error ? row.error : "";
    if (row.same_as_whole_file_read) c.ReadFileFull(row.path, expected);
    ASSERT_FALSE(expected.empty()) << row.label;

    std::string error;
    Long a = 0, b = 0, d = 0, e = 0;
    EXPECT_EQ(c.ReadFileToArrayGetSize(row.path, a, b, error, row.delimiter), kFalse) << row.label;
    EXPECT_EQ(error, expected) << row.label;

    auto array = HostArray<std::string>::TwoDim(1, 2, 1, 2);
    error.clear();
    EXPECT_EQ(c.ReadFileToArray(row.path, array, 2, 2, a, b, d, e, error, row.delimiter), kFalse) << row.label;
    EXPECT_EQ(error, expected) << row.label;

    auto names = HostArray<std::string>::OneDim(1, 2);
    error.clear();
    EXPECT_EQ(c.ReadFileToCSVDatabase(row.path, names, array, 1, 2, 1, 2, a, b, error, row.delimiter), kFalse)
        << row.label;
    EXPECT_EQ(error, expected) << row.label;
  }
  // Without any file service the readers fail cleanly too.
  Tolva2011Register bare(platform::Services{}, nullptr, nullptr);
  std::string error;
  Long a = 0, b = 0;
  EXPECT_EQ(bare.ReadFileToArrayGetSize("/data/ok.csv", a, b, error), kFalse);
}

}  // namespace
}  // namespace tolva::testing_textdata
