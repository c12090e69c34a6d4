// Fuzz target of the CSV database reader over the in-memory file system,
// checked against the array reader. Byte 0 picks the delimiter, bytes 1 to 4
// the record and field ranges, byte 5 trimming and the arrays' lower bound;
// the rest is the file.
#include <algorithm>
#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "fuzz/fuzz_target.h"
#include "tolva/tolva2011register.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tolva;
  if (size < 6) return 0;
  static const char* const kDelimiters[] = {",", ";", "\t", "", "ab"};
  const std::string delimiter = kDelimiters[data[0] % 5], sentinel = "\x01untouched";
  const Long first_record = data[1] % 8 - 1, last_record = data[2] % 8 - 1;
  const Long first_field = data[3] % 8 - 1, last_field = data[4] % 8 - 1;
  const Boolean trim = (data[5] & 1) ? kTrue : kFalse;
  const Long lower = data[5] / 2 % 3;
  auto fs = std::make_shared<fakes::FakeFileSystem>();
  fs->AddFile("/f.csv", std::string(reinterpret_cast<const char*>(data + 6), size - 6));
  platform::Services services;
  services.files = fs;
  Tolva2011Register c(services, nullptr, nullptr);

  Long rows = 0, columns = 0, returned_rows = 0, returned_columns = 0, actual_rows = 0, actual_columns = 0, records = 0,
       fields = 0;
  std::string error;
  const bool sized = IsTrue(c.ReadFileToArrayGetSize("/f.csv", rows, columns, error, delimiter));
  if (rows * columns > 65536) return 0;
  auto grid = HostArray<std::string>::TwoDim(1, std::max<Long>(rows, 1), 1, std::max<Long>(columns, 1));
  c.ReadFileToArray("/f.csv", grid, rows, columns, returned_rows, returned_columns, actual_rows, actual_columns, error,
                    delimiter, trim);

  auto names = HostArray<std::string>::OneDim(lower, lower + 5);
  auto values = HostArray<std::string>::TwoDim(lower, lower + 5, lower, lower + 5);
  for (Long i = lower; i <= lower + 5; ++i)
    for (Long k = lower; k <= lower + 5; ++k) *names.At(i) = *values.At(i, k) = sentinel;
  const bool read = IsTrue(c.ReadFileToCSVDatabase("/f.csv", names, values, first_record, last_record, first_field,
                                                   last_field, records, fields, error, delimiter, trim));
  Check(read == sized && error.empty() == read, "the database reader reads what the array reader sizes");
  if (!read) return 0;
  const Long first = first_record < 2 ? 1 : first_record;
  Check(records == (last_record > 0 ? last_record - first + 1 : 0) && fields == last_field - first_field + 1,
        "the counts describe the ranges asked for");

  // Row 0 of the database is the header, row r the r-th record read; each is
  // grid row r + 1 of the array reader. A cell in the ranges agrees with the
  // grid's (a field its line lacks is left alone); any other is left alone.
  auto agrees = [&](const std::string& cell, const std::string* want) {
    return want ? cell == *want || (cell == sentinel && want->empty()) : cell == sentinel;
  };
  for (Long row = lower; row <= lower + 5; ++row) {
    for (Long column = lower; column <= lower + 5; ++column) {
      const Long field = std::max<Long>(first_field, 1) + column - 1, record = row + first - 1;
      const bool in_fields = column >= 1 && field <= last_field;
      Check(agrees(*values.At(row, column),
                   in_fields && row >= 1 && record <= last_record ? grid.At(record + 1, field) : nullptr),
            "a record agrees with the array reader");
      if (row == lower)
        Check(agrees(*names.At(column), in_fields ? grid.At(1, field) : nullptr),
              "a name agrees with the array reader");
    }
  }
  return 0;
}
