// Fuzz target of the array readers over the in-memory file system (the CSV
// database reader has a target of its own): the readers agree on the rows,
// counts stay within the limits, and no cell outside the returned ones is
// touched. Byte 0 picks the delimiter length (0 to 3), byte 1 the limits;
// then the delimiter; the rest is the file.
#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "fuzz/fuzz_target.h"
#include "tolva/tolva2011register.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tolva::HostArray;
  using tolva::Long;
  const char* const kSentinel = "\x01untouched";
  if (size < 2) return 0;
  const std::size_t delimiter_length = data[0] % 4;
  const std::uint8_t limits = data[1];
  if (size < 2 + delimiter_length) return 0;
  const std::string delimiter(reinterpret_cast<const char*>(data + 2), delimiter_length);
  const std::string file(reinterpret_cast<const char*>(data + 2 + delimiter_length), size - 2 - delimiter_length);

  auto fs = std::make_shared<tolva::fakes::FakeFileSystem>();
  fs->AddFile("/f.csv", file);
  tolva::platform::Services services;
  services.files = fs;
  tolva::Tolva2011Register c(services, nullptr, nullptr);
  c.ReadWriteIncrement(static_cast<Long>(limits % 5) - 1);

  Long rows = -1, columns = -1;
  std::string error;
  const bool sized = tolva::IsTrue(c.ReadFileToArrayGetSize("/f.csv", rows, columns, error, delimiter));
  Check(sized == error.empty(), "size test: result and error text agree");
  if (!sized) return 0;
  Check(rows >= 0 && columns >= 0, "size test: counts are not negative");
  Check(rows > 0 || columns == 0, "size test: no width without rows");

  // Limits around the measured size: sometimes smaller, sometimes 0 or negative.
  const Long max_rows = (limits & 0x10) ? rows : static_cast<Long>(limits % 4) - 1;
  const Long max_columns = (limits & 0x20) ? columns : static_cast<Long>((limits >> 2) % 4) - 1;
  const Long array_rows = 4, array_columns = 4;
  auto array = HostArray<std::string>::TwoDim(1, array_rows, 1, array_columns);
  for (Long r = 1; r <= array_rows; ++r)
    for (Long k = 1; k <= array_columns; ++k) array.Store(r, k, kSentinel);
  Long returned_rows = 0, returned_columns = 0, actual_rows = 0, actual_columns = 0;
  const bool read = tolva::IsTrue(c.ReadFileToArray("/f.csv", array, max_rows, max_columns, returned_rows,
                                                    returned_columns, actual_rows, actual_columns, error, delimiter,
                                                    (limits & 0x40) ? tolva::kTrue : tolva::kFalse));
  Check(error.empty(), "array: no error on a readable file");
  Check(read == (rows > 0), "array: succeeds exactly when there is a row");
  Check(actual_rows == rows, "array and size test count the same rows");
  Check(actual_columns >= 0 && actual_columns <= std::max<Long>(max_columns, 0), "array: width within MaxColumns");
  Check(actual_columns <= columns, "array: stored width within the widest row");
  if (max_rows >= rows && max_columns >= columns && rows > 0) Check(actual_columns == columns, "array: full width");
  if (read) {
    Check(returned_rows == std::min(std::max<Long>(max_rows, 0), rows), "array: returned rows");
    Check(returned_columns == std::min(std::max<Long>(max_columns, 0), actual_columns), "array: returned columns");
    for (Long r = 1; r <= array_rows; ++r)
      for (Long k = 1; k <= array_columns; ++k)
        if (*array.At(r, k) != kSentinel) Check(r <= returned_rows && k <= returned_columns, "array: cell in range");
  }
  return 0;
}
