// The delimited readers on real files: a large file (read through a
// mapping) must give exactly what the same bytes give through the in-memory
// file service, and failures must carry the whole-file read's texts.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_file_system.h"
#include "integration/files/temp_dir.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

using testing_files::TempDir;

TEST(RealFilesTest, LargeFileReadsAsThroughTheFileService) {
  // Over 1 MiB, with quoted fields, doubled quotes, line breaks in fields,
  // empty lines and a last line without a terminator.
  std::string text;
  for (int r = 0; text.size() < (3u << 20); ++r) {
    text += std::to_string(r) + ",\"name " + std::to_string(r % 97) + ", jr\",\"say \"\"x\"\"\"," +
            (r % 13 == 0 ? "\"two\r\nlines\"" : std::string("plain")) + (r % 7 == 0 ? "\r\n\r\n" : "\r\n");
  }
  text += "last,row";
  TempDir dir;
  const std::string path = dir / "large.csv";
  TempDir::Write(path, text);
  auto memory = std::make_shared<fakes::FakeFileSystem>();
  memory->AddFile(path, text);
  platform::Services services;
  services.files = memory;
  Tolva2011Register real(platform::LinuxServices(), nullptr, nullptr), fake(services, nullptr, nullptr);

  Long rows = 0, columns = 0, fake_rows = 0, fake_columns = 0, rr = 0, rc = 0, ar = 0, ac = 0;
  std::string error;
  ASSERT_EQ(real.ReadFileToArrayGetSize(path, rows, columns, error), kTrue) << error;
  ASSERT_EQ(fake.ReadFileToArrayGetSize(path, fake_rows, fake_columns, error), kTrue) << error;
  EXPECT_EQ(std::vector<Long>({rows, columns}), std::vector<Long>({fake_rows, fake_columns}));
  auto a = HostArray<std::string>::TwoDim(1, rows, 1, columns), b = a;
  ASSERT_EQ(real.ReadFileToArray(path, a, rows, columns, rr, rc, ar, ac, error), kTrue) << error;
  ASSERT_EQ(fake.ReadFileToArray(path, b, rows, columns, rr, rc, ar, ac, error), kTrue) << error;
  for (Long r = 1; r <= rows; ++r)
    for (Long k = 1; k <= columns; ++k) ASSERT_EQ(*a.At(r, k), *b.At(r, k)) << r << "," << k;
  EXPECT_EQ(*a.At(rows, 2), "row");
}

TEST(RealFilesTest, FailuresCarryTheWholeFileReadTexts) {
  TempDir dir;
  ::mkdir((dir / "folder.csv").c_str(), 0755);
  Tolva2011Register real(platform::LinuxServices(), nullptr, nullptr);
  for (const std::string& path : {dir / "missing.csv", dir / "folder.csv"}) {
    std::string expected, error;
    real.ReadFileFull(path, expected);
    ASSERT_FALSE(expected.empty()) << path;
    Long rows = 0, columns = 0;
    EXPECT_EQ(real.ReadFileToArrayGetSize(path, rows, columns, error), kFalse) << path;
    EXPECT_EQ(error, expected) << path;
  }
}

}  // namespace
}  // namespace tolva
