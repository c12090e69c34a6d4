// The whole-file reader on real files: read in parts by several threads, a
// file comes back byte for byte, and one shorter or longer than the size
// asked for gives what it has, never stale or zero bytes.
#include "platform/linux/whole_file_read.h"

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

std::string RandomBytes(std::size_t n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::string s(n + 8, '\0');
  for (std::size_t i = 0; i < n; i += 8) {
    const std::uint64_t v = random();
    std::memcpy(&s[i], &v, 8);
  }
  s.resize(n);
  return s;
}

class WholeFileReadTest : public ::testing::Test {
 protected:
  // Writes `bytes` to a file and reads it back asking for `size` bytes.
  int ReadBack(const std::string& bytes, std::uint64_t size, std::string& out) {
    const std::string path = dir.path() + "/file.bin";
    const int w = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    EXPECT_GE(w, 0);
    EXPECT_EQ(::write(w, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::close(w);
    const int fd = ::open(path.c_str(), O_RDONLY);
    const int err = platform::posix::ReadRegularFile(fd, size, out);
    ::close(fd);
    return err;
  }
  TempDir dir;
};

TEST_F(WholeFileReadTest, GivesWhatTheFileHasUpToTheSizeAsked) {
  struct Case {
    std::size_t file, asked;
  } cases[] = {
      {4095, 4095},
      // Sizes that do not divide evenly among the parts.
      {97 * kMiB + 4097, 97 * kMiB + 4097},
      {10, 100},               // shrank before the read: what is there
      {70 * kMiB, 96 * kMiB},  // shrank, read in parts: the last part comes up short
      {33 * kMiB, 96 * kMiB},  // shrank into the first part: later parts find nothing
      {96 * kMiB, 70 * kMiB},  // grew: only the bytes asked for
  };
  for (const Case& c : cases) {
    const std::string bytes = RandomBytes(c.file, static_cast<unsigned>(c.file));
    std::string out = "stale";
    ASSERT_EQ(ReadBack(bytes, c.asked, out), 0) << c.file;
    const std::size_t expected = std::min(c.file, c.asked);
    ASSERT_EQ(out.size(), expected) << c.file << " asked " << c.asked;
    EXPECT_TRUE(out == bytes.substr(0, expected)) << c.file << " asked " << c.asked << " differs";
  }
}

}  // namespace
}  // namespace tolva::testing_files
