// Fuzz target of the CSV database reader over the in-memory file system: it
// agrees with the array reader on every cell it stores, stores nothing
// outside the ranges asked for, and counts the ranges. Byte 0 picks the
// delimiter, bytes 1 to 4 the record and field ranges, byte 5 trimming and
// the arrays' lower bound; the rest is the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "fuzz/fuzz_check.h"
#include "tolva/tolva2011register.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tolva::HostArray;
  using tolva::Long;
  if (size < 6) return 0;
  static const char* const kDelimiters[] = {",", ";", "\t", "", "ab"};
  const std::string delimiter = kDelimiters[data[0] % 5], sentinel = "\x01untouched";
  const Long first_record = data[1] % 8 - 1, last_record = data[2] % 8 - 1;
  const Long first_field = data[3] % 8 - 1, last_field = data[4] % 8 - 1;
  const tolva::Boolean trim = (data[5] & 1) ? tolva::kTrue : tolva::kFalse;
  const Long lower = data[5] / 2 % 3;
  auto fs = std::make_shared<tolva::fakes::FakeFileSystem>();
  fs->AddFile("/f.csv", std::string(reinterpret_cast<const char*>(data + 6), size - 6));
  tolva::platform::Services services;
  services.files = fs;
  tolva::Tolva2011Register c(services, nullptr, nullptr);

  Long rows = 0, columns = 0, returned_rows = 0, returned_columns = 0, actual_rows = 0, actual_columns = 0;
  std::string error;
  const bool sized = tolva::IsTrue(c.ReadFileToArrayGetSize("/f.csv", rows, columns, error, delimiter));
  if (rows * columns > 65536) return 0;
  auto grid = HostArray<std::string>::TwoDim(1, std::max<Long>(rows, 1), 1, std::max<Long>(columns, 1));
  c.ReadFileToArray("/f.csv", grid, rows, columns, returned_rows, returned_columns, actual_rows, actual_columns, error,
                    delimiter, trim);

  auto names = HostArray<std::string>::OneDim(lower, lower + 5);
  auto values = HostArray<std::string>::TwoDim(lower, lower + 5, lower, lower + 5);
  for (Long i = lower; i <= lower + 5; ++i) {
    *names.At(i) = sentinel;
    for (Long k = lower; k <= lower + 5; ++k) *values.At(i, k) = sentinel;
  }
  Long records = 0, fields = 0;
  const bool read =
      tolva::IsTrue(c.ReadFileToCSVDatabase("/f.csv", names, values, first_record, last_record, first_field, last_field,
                                            records, fields, error, delimiter, trim));
  Check(read == sized && error.empty() == read, "the database reader reads what the array reader sizes");
  if (!read) return 0;
  const Long first = first_record < 2 ? 1 : first_record;
  Check(records == (last_record > 0 ? last_record - first + 1 : 0), "records counts the range asked for");
  Check(fields == last_field - first_field + 1, "fields counts the range asked for");

  // Row 0 of the database is the header, row r the r-th record read; each is
  // grid row r + 1 of the array reader. A field a line lacks stays untouched.
  for (Long row = lower; row <= lower + 5; ++row) {
    for (Long column = lower; column <= lower + 5; ++column) {
      const Long field = std::max<Long>(first_field, 1) + column - 1;
      const bool in_fields = column >= 1 && field <= last_field;
      const Long record = row + first - 1;
      const std::string* cell = values.At(row, column);
      const std::string* want = grid.At(record + 1, field);
      if (!in_fields || row < 1 || last_record < 1 || record > last_record || !want)
        Check(*cell == sentinel, "nothing stored outside the ranges");
      else
        Check(*cell == *want || (*cell == sentinel && want->empty()), "a stored record agrees with the array");
      if (row == lower) {
        const std::string* header = names.At(column);
        const std::string* name = grid.At(1, field);
        Check(in_fields && name ? *header == *name || (*header == sentinel && name->empty()) : *header == sentinel,
              "a stored field name agrees with the array");
      }
    }
  }
  return 0;
}
