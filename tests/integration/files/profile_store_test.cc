// The profile service on real files: the cache, concurrent writers, and a
// writer killed in the middle of its work.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/linux/profiles/profile_file.h"
#include "integration/files/temp_dir.h"
#include "platform/linux/profiles/profile_store_posix.h"

namespace tolva::testing_files {
namespace {

using platform::posix::PosixProfileStore;

std::string Get(PosixProfileStore& store, const std::string& file, const std::string& section, const std::string& key,
                const std::string& def = "<none>") {
  std::string out;
  store.GetString(section, key, def, out, 1024, file);
  return out;
}

// The names in `dir`, in order: a profile write leaves nothing but the profile.
std::string Names(const TempDir& dir) {
  std::vector<std::string> names;
  for (const auto& e : std::filesystem::directory_iterator(dir / "")) names.push_back(e.path().filename());
  std::sort(names.begin(), names.end());
  std::string out;
  for (const auto& n : names) out += n + " ";
  return out;
}

TEST(ProfileStoreTest, DeletingFromAMissingProfileCreatesItEmpty) {
  TempDir dir;
  PosixProfileStore store;
  EXPECT_TRUE(store.WriteString("S", "k", nullptr, dir / "new.ini"));
  EXPECT_EQ(Names(dir), "new.ini ");
  EXPECT_EQ(TempDir::Read(dir / "new.ini"), "");
}

TEST(ProfileStoreTest, RepeatedLookUpsParseOnceAndNeverServeAStaleFile) {
  TempDir dir;
  const std::string ini = dir / "cache.ini";
  TempDir::Write(ini, "[S]\r\nk=1\r\n");
  PosixProfileStore store;
  for (int i = 0; i < 100; ++i) ASSERT_EQ(Get(store, ini, "S", "k"), "1");
  EXPECT_EQ(store.cache().parses(), 1u);
  // Another program rewrites the file in place with the same size.
  TempDir::Write(ini, "[S]\r\nk=2\r\n");
  struct timespec times[2] = {{0, UTIME_OMIT}, {0, UTIME_NOW}};
  ::utimensat(AT_FDCWD, ini.c_str(), times, 0);
  EXPECT_EQ(Get(store, ini, "S", "k"), "2");
  ::unlink(ini.c_str());
  EXPECT_EQ(Get(store, ini, "S", "k"), "<none>");
}

// The key and value of writer `w`'s `i`th write, with values of many lengths.
std::string Key(int w, int i) {
  return "w" + std::to_string(w) + "k" + std::to_string(i);
}
std::string Value(int i) {
  return "value " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 50), '.');
}

constexpr ssize_t kIntSize = sizeof(int);

// Every write whose call returned must be in the file, whatever happens to
// the writer afterwards.
TEST(ProfileStoreKillTest, AKilledWriterLosesNoAcknowledgedValue) {
  TempDir dir;
  const std::string ini = dir / "kill.ini";
  for (int round = 0; round < 4; ++round) {
    int acks[2];
    ASSERT_EQ(::pipe(acks), 0);
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      ::close(acks[0]);
      PosixProfileStore store;
      for (int i = 0;; ++i) {
        const std::string value = Value(i);
        if (!store.WriteString(i % 2 ? "Odd" : "Even", Key(round, i), &value, ini)) ::_exit(3);
        if (::write(acks[1], &i, sizeof i) != kIntSize) ::_exit(4);
      }
    }
    ::close(acks[1]);
    // Kill it after a number of acknowledged writes that varies per round.
    int last = -1;
    for (int got = 0; got < 20 + round * 15 && ::read(acks[0], &last, sizeof last) == kIntSize;) ++got;
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped on its own: " << status;
    for (int i; ::read(acks[0], &i, sizeof i) == kIntSize;) last = i;
    ::close(acks[0]);
    ASSERT_GE(last, 0);
    const platform::posix::ProfileFile file(TempDir::Read(ini));
    for (int i = 0; i <= last; ++i) {
      const auto value = file.Find(i % 2 ? "odd" : "even", Key(round, i));
      ASSERT_TRUE(value.has_value()) << "round " << round << " lost acknowledged write " << i << " of " << last;
      EXPECT_EQ(std::string(*value), Value(i));
    }
  }
  // A writer killed in the instant between naming its new file and renaming
  // it leaves that file; the next writer clears it.
  PosixProfileStore store;
  const std::string value = "last";
  ASSERT_TRUE(store.WriteString("Even", "after", &value, ini));
  EXPECT_EQ(Names(dir), "kill.ini ");
}

TEST(ProfileStoreKillTest, ProcessesWritingAtOnceLoseNoUpdate) {
  TempDir dir;
  const std::string ini = dir / "shared.ini";
  constexpr int kWriters = 3, kKeys = 40;
  pid_t pids[kWriters];
  for (int w = 0; w < kWriters; ++w) {
    pids[w] = ::fork();
    ASSERT_GE(pids[w], 0);
    if (pids[w] == 0) {
      PosixProfileStore store;
      for (int i = 0; i < kKeys; ++i) {
        const std::string value = Value(w * 1000 + i);
        if (!store.WriteString("Shared", Key(w, i), &value, ini)) ::_exit(1);
      }
      ::_exit(0);
    }
  }
  for (pid_t pid : pids) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  const platform::posix::ProfileFile file(TempDir::Read(ini));
  for (int w = 0; w < kWriters; ++w)
    for (int i = 0; i < kKeys; ++i) {
      const auto value = file.Find("Shared", Key(w, i));
      ASSERT_TRUE(value.has_value()) << w << " " << i;
      EXPECT_EQ(std::string(*value), Value(w * 1000 + i));
    }
  EXPECT_EQ(Names(dir), "shared.ini ") << "the writers' lock is held where nobody sees a file";
}

}  // namespace
}  // namespace tolva::testing_files
