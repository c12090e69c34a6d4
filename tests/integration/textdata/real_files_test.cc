// The delimited readers on real files: a large file (read through a
// mapping) must give exactly what the same bytes give through the file
// service, and failures must carry the whole-file read's texts.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "fakes/fake_file_system.h"
#include "tolva/tolva2011register.h"

namespace tolva {
namespace {

namespace fs = std::filesystem;

class RealFilesTest : public ::testing::Test {
 protected:
  RealFilesTest()
      : dir(fs::temp_directory_path() / ("tolva-delimited-" + std::to_string(::getpid()))),
        real(platform::LinuxServices(), nullptr, nullptr) {
    fs::create_directories(dir);
  }
  ~RealFilesTest() override {
    std::error_code ec;
    fs::remove_all(dir, ec);
  }
  std::string Write(const std::string& name, const std::string& data) {
    const std::string path = (dir / name).string();
    std::ofstream(path, std::ios::binary) << data;
    return path;
  }
  fs::path dir;
  Tolva2011Register real;
};

TEST_F(RealFilesTest, LargeFileReadsAsThroughTheFileService) {
  // Over 1 MiB, with quoted fields, doubled quotes, line breaks in fields,
  // empty lines and a last line without a terminator.
  std::string text;
  for (int r = 0; text.size() < (3u << 20); ++r) {
    text += std::to_string(r) + ",\"name " + std::to_string(r % 97) + ", jr\",\"say \"\"x\"\"\"," +
            (r % 13 == 0 ? "\"two\r\nlines\"" : std::string("plain")) + (r % 7 == 0 ? "\r\n\r\n" : "\r\n");
  }
  text += "last,row";
  const std::string path = Write("large.csv", text);
  auto memory = std::make_shared<fakes::FakeFileSystem>();
  memory->AddFile(path, text);
  platform::Services services;
  services.files = memory;
  Tolva2011Register fake(services, nullptr, nullptr);

  Long real_rows = 0, real_columns = 0, fake_rows = 0, fake_columns = 0;
  std::string error;
  ASSERT_EQ(real.ReadFileToArrayGetSize(path, real_rows, real_columns, error), kTrue) << error;
  ASSERT_EQ(fake.ReadFileToArrayGetSize(path, fake_rows, fake_columns, error), kTrue) << error;
  EXPECT_EQ(real_rows, fake_rows);
  EXPECT_EQ(real_columns, fake_columns);
  EXPECT_GT(real_rows, 30000);

  auto a = HostArray<std::string>::TwoDim(1, real_rows, 1, real_columns);
  auto b = HostArray<std::string>::TwoDim(1, real_rows, 1, real_columns);
  Long rr = 0, rc = 0, ar = 0, ac = 0;
  ASSERT_EQ(real.ReadFileToArray(path, a, real_rows, real_columns, rr, rc, ar, ac, error), kTrue) << error;
  ASSERT_EQ(fake.ReadFileToArray(path, b, real_rows, real_columns, rr, rc, ar, ac, error), kTrue) << error;
  for (Long r = 1; r <= real_rows; ++r)
    for (Long k = 1; k <= real_columns; ++k) ASSERT_EQ(*a.At(r, k), *b.At(r, k)) << r << "," << k;
  EXPECT_EQ(*a.At(1, 2), "name 0, jr");
  EXPECT_EQ(*a.At(1, 4), "two\r\nlines");
  EXPECT_EQ(*a.At(real_rows, 2), "row");
}

TEST_F(RealFilesTest, FailuresCarryTheWholeFileReadTexts) {
  Write("empty.csv", "");
  fs::create_directories(dir / "folder.csv");
  const std::string paths[] = {(dir / "missing.csv").string(), (dir / "none" / "x.csv").string(),
                               (dir / "empty.csv").string(), (dir / "folder.csv").string()};
  for (const std::string& path : paths) {
    std::string expected;
    real.ReadFileFull(path, expected);
    ASSERT_FALSE(expected.empty()) << path;
    std::string error;
    Long rows = 0, columns = 0;
    EXPECT_EQ(real.ReadFileToArrayGetSize(path, rows, columns, error), kFalse) << path;
    EXPECT_EQ(error, expected) << path;
  }
}

}  // namespace
}  // namespace tolva
