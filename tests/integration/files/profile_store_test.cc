// The profile service on real files: formatting kept, the cache, permissions,
// concurrent writers, and a writer killed in the middle of its work.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/linux/profiles/profile_file.h"
#include "integration/files/temp_dir.h"
#include "platform/linux/profiles/profile_store_posix.h"
#include "tolva/tolva2011register.h"

namespace tolva::testing_files {
namespace {

using platform::posix::PosixProfileStore;

std::string Get(PosixProfileStore& store, const std::string& file, const std::string& section, const std::string& key,
                const std::string& def = "<none>") {
  std::string out;
  store.GetString(section, key, def, out, 1024, file);
  return out;
}

TEST(ProfileStoreTest, WritesKeepEveryOtherByte) {
  TempDir dir;
  const std::string ini = dir / "app.ini";
  const std::string original = "; settings\n[One]\r\na = 1\r\n\r\n; tail\r[Two]\nb=2";
  TempDir::Write(ini, original);
  PosixProfileStore store;
  const std::string v = "9";
  ASSERT_TRUE(store.WriteString("one", "A", &v, ini));
  EXPECT_EQ(TempDir::Read(ini), "; settings\n[One]\r\nA=9\r\n\r\n; tail\r[Two]\nb=2");
  ASSERT_TRUE(store.WriteString("Two", "c", &v, ini));
  EXPECT_EQ(TempDir::Read(ini), "; settings\n[One]\r\nA=9\r\n\r\n; tail\r[Two]\nb=2\r\nc=9\r\n");
  ASSERT_TRUE(store.WriteString("One", "a", nullptr, ini));
  EXPECT_EQ(TempDir::Read(ini), "; settings\n[One]\r\n\r\n; tail\r[Two]\nb=2\r\nc=9\r\n");
  const std::string bad = "x\r\n[Evil]";
  EXPECT_FALSE(store.WriteString("One", "a", &bad, ini));  // would split the line
  EXPECT_EQ(Get(store, ini, "Evil", "a"), "<none>");
}

TEST(ProfileStoreTest, MissingFileIsCreatedAndPermissionsAreKept) {
  TempDir dir;
  const std::string ini = dir / "new.ini";
  PosixProfileStore store;
  std::string back = ini;
  for (char& ch : back)
    if (ch == '/') ch = '\\';
  const std::string v = "value";
  EXPECT_TRUE(store.WriteString("Sec", "key", nullptr, back));  // deleting from nothing creates nothing
  EXPECT_EQ(::access(ini.c_str(), F_OK), -1);
  ASSERT_TRUE(store.WriteString("Sec", "key", &v, back));
  EXPECT_EQ(TempDir::Read(ini), "[Sec]\r\nkey=value\r\n");
  ::chmod(ini.c_str(), 0604);
  ASSERT_TRUE(store.WriteString("Sec", "other", &v, ini));
  struct stat st {};
  ASSERT_EQ(::stat(ini.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0604u);
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
  // Our own write is served without reading the file again.
  const std::string v = "3";
  ASSERT_TRUE(store.WriteString("S", "k", &v, ini));
  const auto parses = store.cache().parses();
  EXPECT_EQ(Get(store, ini, "S", "k"), "3");
  EXPECT_EQ(store.cache().parses(), parses);
  ::unlink(ini.c_str());
  EXPECT_EQ(Get(store, ini, "S", "k"), "<none>");
}

TEST(ProfileStoreTest, BareNamesAndTheSystemProfileLiveInTheConfigDirectory) {
  TempDir dir;
  ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
  Tolva2011Register c(platform::LinuxServices());
  c.FileWriteProfileString("bare.ini", "S", "k", "v");
  EXPECT_EQ(TempDir::Read(dir / "config/bare.ini"), "[S]\r\nk=v\r\n");
  EXPECT_EQ(c.FileReadProfileString("bare.ini", "s", "K"), "v");
  EXPECT_EQ(c.WinDirectory(), dir / "config\\");
  TempDir::Write(dir / "config/win.ini", "[Extensions]\r\ntxt=notepad ^.txt\r\n");
  PosixProfileStore store;
  std::string out;
  EXPECT_EQ(store.GetSystemString("extensions", "TXT", "", out, 1024), 13u);
  EXPECT_EQ(out, "notepad ^.txt");
  ::unsetenv("XDG_CONFIG_HOME");
}

TEST(ProfileStoreTest, BadFilesGiveDefaultsAndWritesFailCleanly) {
  TempDir dir;
  PosixProfileStore store;
  const std::string v = "v";
  ::mkdir((dir / "adir.ini").c_str(), 0755);
  EXPECT_EQ(Get(store, dir / "adir.ini", "S", "k"), "<none>");
  EXPECT_FALSE(store.WriteString("S", "k", &v, dir / "adir.ini"));
  EXPECT_FALSE(store.WriteString("S", "k", &v, dir / "missing/dir/x.ini"));
  EXPECT_EQ(Get(store, "", "S", "k", "  d  "), "d");
  TempDir::Write(dir / "nul.ini", std::string("[S]\0\r\nk=a\0b\r\n", 13));
  EXPECT_EQ(Get(store, dir / "nul.ini", "S", "k"), "a");
}

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
        const std::string key = "r" + std::to_string(round) + "k" + std::to_string(i);
        const std::string value = "value " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 50), '.');
        if (!store.WriteString(i % 2 ? "Odd" : "Even", key, &value, ini)) ::_exit(3);
        if (::write(acks[1], &i, sizeof i) != static_cast<ssize_t>(sizeof i)) ::_exit(4);
      }
    }
    ::close(acks[1]);
    int last = -1, got = 0;
    // Let it get going, then kill it at a moment that varies per round.
    while (got < 20 + round * 15 && ::read(acks[0], &last, sizeof last) == static_cast<ssize_t>(sizeof last)) ++got;
    ::usleep(static_cast<useconds_t>(round * 700));
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped on its own: " << status;
    for (int i; ::read(acks[0], &i, sizeof i) == static_cast<ssize_t>(sizeof i);) last = i;
    ::close(acks[0]);
    ASSERT_GE(last, 0);

    const platform::posix::ProfileFile file(TempDir::Read(ini));
    for (int i = 0; i <= last; ++i) {
      const std::string key = "r" + std::to_string(round) + "k" + std::to_string(i);
      const auto value = file.Find(i % 2 ? "odd" : "even", key);
      ASSERT_TRUE(value.has_value()) << "round " << round << " lost acknowledged write " << i << " of " << last;
      EXPECT_EQ(std::string(*value), "value " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 50), '.'));
    }
  }
}

TEST(ProfileStoreKillTest, TwoProcessesWritingAtOnceLoseNoUpdate) {
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
        const std::string value = std::to_string(w * 1000 + i);
        if (!store.WriteString("Shared", "w" + std::to_string(w) + "k" + std::to_string(i), &value, ini)) ::_exit(1);
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
      const auto value = file.Find("Shared", "w" + std::to_string(w) + "k" + std::to_string(i));
      ASSERT_TRUE(value.has_value()) << w << " " << i;
      EXPECT_EQ(std::string(*value), std::to_string(w * 1000 + i));
    }
}

}  // namespace
}  // namespace tolva::testing_files
