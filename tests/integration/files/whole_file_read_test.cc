// The whole-file reader on real files: read in parts by several threads, a
// file comes back byte for byte, and one shorter or longer than the size
// asked for gives what it has, never stale or zero bytes.
#include "platform/linux/files/whole_file_read.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "integration/files/temp_dir.h"

namespace tolva::testing_files {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(WholeFileReadTest, GivesWhatTheFileHasUpToTheSizeAsked) {
  struct Case {
    std::size_t file, asked;
  } cases[] = {
      {4095, 4095},
      {97 * kMiB + 4097, 97 * kMiB + 4097},  // does not divide evenly among the parts
      {10, 100},                             // shrank before the read: what is there
      {70 * kMiB, 96 * kMiB},                // shrank, read in parts: the last part comes up short
      {96 * kMiB, 70 * kMiB},                // grew: only the bytes asked for
  };
  TempDir dir;
  const std::string path = dir / "file.bin";
  std::mt19937_64 random(7);
  for (const Case& c : cases) {
    // Fresh random bytes every time, so a stale part of the last file shows.
    std::string bytes(c.file + 8, '\0');
    for (std::size_t i = 0; i < c.file; i += 8) {
      const std::uint64_t v = random();
      std::memcpy(&bytes[i], &v, 8);
    }
    bytes.resize(c.file);
    TempDir::Write(path, bytes);
    const int fd = ::open(path.c_str(), O_RDONLY);
    std::string out = "stale";
    ASSERT_EQ(platform::posix::ReadRegularFile(fd, c.asked, out), 0) << c.file;
    ::close(fd);
    const std::size_t expected = std::min(c.file, c.asked);
    ASSERT_EQ(out.size(), expected) << c.file << " asked " << c.asked;
    EXPECT_TRUE(out == bytes.substr(0, expected)) << c.file << " asked " << c.asked << " differs";
  }
}

}  // namespace
}  // namespace tolva::testing_files
