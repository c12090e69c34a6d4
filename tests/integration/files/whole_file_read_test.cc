// The whole-file reader on real files: files read in parts by several
// threads must come back byte for byte, at every size around the part
// boundaries, and a file that is shorter or longer than the size asked for
// must give what it has, never stale or zero bytes.
#include "platform/linux/files/whole_file_read.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <string>

#include "integration/files/temp_dir.h"

namespace tolva::testing_files {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

std::string RandomBytes(std::size_t n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::string s(n, '\0');
  for (std::size_t i = 0; i + 8 <= n; i += 8) {
    const std::uint64_t v = random();
    std::memcpy(&s[i], &v, 8);
  }
  for (std::size_t i = n - n % 8; i < n; ++i) s[i] = static_cast<char>(random());
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

TEST_F(WholeFileReadTest, GivesTheFileByteForByteAtEverySize) {
  // Sizes on both sides of where reading in parts starts, and sizes that do
  // not divide evenly among the parts.
  const std::size_t sizes[] = {1, 4095, 4096, 8 * kMiB + 1, 64 * kMiB - 1, 64 * kMiB, 64 * kMiB + 3, 97 * kMiB + 4097};
  for (std::size_t size : sizes) {
    const std::string bytes = RandomBytes(size, static_cast<unsigned>(size));
    std::string out = "stale";
    ASSERT_EQ(ReadBack(bytes, size, out), 0) << size;
    ASSERT_EQ(out.size(), size);
    EXPECT_TRUE(out == bytes) << "size " << size << " differs";
  }
}

TEST_F(WholeFileReadTest, AFileShorterOrLongerThanAskedGivesWhatItHas) {
  struct Case {
    std::size_t file;
    std::size_t asked;
  } cases[] = {
      {10, 100},               // shrank before the read: what is there
      {70 * kMiB, 96 * kMiB},  // shrank, read in parts: the last part comes up short
      {33 * kMiB, 96 * kMiB},  // shrank into the first part: later parts find nothing
      {96 * kMiB, 70 * kMiB},  // grew: only the bytes asked for
  };
  for (const Case& c : cases) {
    const std::string bytes = RandomBytes(c.file, static_cast<unsigned>(c.file));
    std::string out;
    ASSERT_EQ(ReadBack(bytes, c.asked, out), 0);
    const std::size_t expected = std::min(c.file, c.asked);
    ASSERT_EQ(out.size(), expected) << c.file << " asked " << c.asked;
    EXPECT_TRUE(out == bytes.substr(0, expected));
  }
}

TEST_F(WholeFileReadTest, AReadErrorIsReportedAndLeavesTheStringAlone) {
  const std::string path = dir.path() + "/write-only.bin";
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  ASSERT_GE(fd, 0);
  for (std::uint64_t size : {std::uint64_t{100}, std::uint64_t{80 * kMiB}}) {
    std::string out = "untouched";
    EXPECT_EQ(platform::posix::ReadRegularFile(fd, size, out), EBADF);
    EXPECT_EQ(out, "untouched");
  }
  ::close(fd);
}

}  // namespace
}  // namespace tolva::testing_files
