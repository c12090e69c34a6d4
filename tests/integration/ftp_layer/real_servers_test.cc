// The layer against every real server available here: the same table of
// cases runs against each, because servers list, store and treat TYPE A
// differently.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "integration/ftp_layer/ftp_layer_test_support.h"

namespace tolva::testing {
namespace {

using platform::FindData;
using platform::InternetHandle;

constexpr std::size_t kBlock = 1 << 20;  // the layer's transfer block

class RealServerTest : public ::testing::TestWithParam<FtpServerKind> {
 protected:
  void SetUp() override {
    std::string why;
    server_ = FtpServer::Start(GetParam(), &why);
    ASSERT_TRUE(server_) << why;
    local_ = MakeTempDir("tolva-ftp-local-");
    ASSERT_FALSE(local_.empty());
    ASSERT_TRUE(s_.Connect(server_->HostPort(), server_->User(), server_->Password()))
        << s_.lib->LastError() << " " << s_.lib->LastResponseInfo() << "\n"
        << server_->LogText();
  }
  void TearDown() override { RemoveTree(local_); }

  std::vector<FindData> List(const std::string& mask) {
    std::vector<FindData> all;
    FindData d;
    InternetHandle find = s_.lib->FindFirstFile(s_.connection, mask, d, 0);
    if (find == 0) return all;
    do all.push_back(d);
    while (s_.lib->FindNextFile(find, d));
    EXPECT_EQ(platform::kErrorNoMoreFiles, s_.lib->LastError());
    EXPECT_TRUE(s_.lib->CloseHandle(find));
    return all;
  }

  std::unique_ptr<FtpServer> server_;
  std::string local_;
  LayerSession s_;
};

TEST_P(RealServerTest, BinaryRoundTripsByteForByte) {
  struct Row {
    std::size_t size;
    const char* label;
  };
  const Row rows[] = {{0, "empty"},      {1, "one byte"},         {kBlock - 1, "block-1"},
                      {kBlock, "block"}, {kBlock + 1, "block+1"}, {2 * kBlock, "two blocks"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const std::string bytes = PatternBytes(row.size);
    const std::string up = local_ + "/up.bin", down = local_ + "/down.bin";
    ASSERT_TRUE(WriteWholeFile(up, bytes));
    ASSERT_TRUE(s_.lib->PutFile(s_.connection, up, "file.bin", platform::kFtpTransferTypeBinary))
        << s_.lib->LastResponseInfo();
    EXPECT_EQ(bytes, ReadWholeFile(server_->Root() + "/file.bin"));
    ASSERT_TRUE(s_.lib->GetFile(s_.connection, "file.bin", down, false, 0, platform::kFtpTransferTypeBinary))
        << s_.lib->LastResponseInfo();
    EXPECT_EQ(bytes, ReadWholeFile(down));
  }
}

TEST_P(RealServerTest, AsciiRoundTripsLineForLineWithCrLfLocally) {
  struct Row {
    std::string local, expected_back, label;
  };
  const std::vector<Row> rows = {
      {"", "", "empty"},
      {"a\r\nb\r\n", "a\r\nb\r\n", "CR LF lines"},
      {"a\nb\n", "a\r\nb\r\n", "LF lines come back as CR LF"},
      {"last line without end", "last line without end", "no final line end"},
      {std::string(kBlock - 1, 'x') + "\r\n" + "y", std::string(kBlock - 1, 'x') + "\r\ny", "CR LF across a block"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const std::string up = local_ + "/up.txt", down = local_ + "/down.txt";
    ASSERT_TRUE(WriteWholeFile(up, row.local));
    ASSERT_TRUE(s_.lib->PutFile(s_.connection, up, "file.txt", platform::kFtpTransferTypeAscii))
        << s_.lib->LastResponseInfo();
    ASSERT_TRUE(s_.lib->GetFile(s_.connection, "file.txt", down, false, 0, platform::kFtpTransferTypeAscii))
        << s_.lib->LastResponseInfo();
    EXPECT_TRUE(ReadWholeFile(down) == row.expected_back) << "size " << ReadWholeFile(down).size();
  }
}

TEST_P(RealServerTest, AsciiGetOfAServerSideUnixFileGivesCrLf) {
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/unix.txt", "one\ntwo\n\nfour\n"));
  const std::string down = local_ + "/unix.txt";
  ASSERT_TRUE(s_.lib->GetFile(s_.connection, "unix.txt", down, false, 0, platform::kFtpTransferTypeAscii));
  EXPECT_EQ("one\r\ntwo\r\n\r\nfour\r\n", ReadWholeFile(down));
}

TEST_P(RealServerTest, NamesWithBlanksAndNonAsciiBytes) {
  const std::vector<std::string> names = {"with blank.txt", "  leading blanks", "caf\xC3\xA9.txt", "semi;colon.txt"};
  const std::string up = local_ + "/up";
  ASSERT_TRUE(WriteWholeFile(up, "abc"));
  for (const auto& name : names) {
    SCOPED_TRACE(name);
    // pure-ftpd trims the leading blanks of every argument itself.
    if (name[0] == ' ' && GetParam() == FtpServerKind::kPureFtpd) continue;
    ASSERT_TRUE(s_.lib->PutFile(s_.connection, up, name, platform::kFtpTransferTypeBinary))
        << s_.lib->LastResponseInfo();
    EXPECT_EQ("abc", ReadWholeFile(server_->Root() + "/" + name));
  }
  std::set<std::string> listed;
  for (const auto& e : List("")) listed.insert(e.name);
  for (const auto& name : names) {
    if (name[0] == ' ' && GetParam() == FtpServerKind::kPureFtpd) continue;
    EXPECT_TRUE(listed.count(name)) << "not listed: [" << name << "]";
  }
}

TEST_P(RealServerTest, ListingGivesTypesSizesDatesAndMasksMatchHere) {
  ::mkdir((server_->Root() + "/sub").c_str(), 0777);
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/a.txt", std::string(1234, 'a')));
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/b.dat", "bb"));
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/ab.txt", "x"));
  std::map<std::string, FindData> all;
  for (auto& e : List("*.*")) all[e.name] = e;
  ASSERT_EQ(4u, all.size());
  EXPECT_EQ(platform::kFileAttributeDirectory, all["sub"].attributes & platform::kFileAttributeDirectory);
  EXPECT_EQ(0u, all["a.txt"].attributes & platform::kFileAttributeDirectory);
  EXPECT_EQ(1234u, all["a.txt"].size);
  EXPECT_TRUE(all["a.txt"].last_write.valid);
  EXPECT_GE(all["a.txt"].last_write.year, 2020);

  struct Row {
    std::string mask;
    std::set<std::string> expected;
  };
  const std::vector<Row> rows = {
      {"*.txt", {"a.txt", "ab.txt"}}, {"?.txt", {"a.txt"}}, {"b*", {"b.dat"}}, {"nothing*", {}}};
  for (const auto& row : rows) {
    std::set<std::string> got;
    for (auto& e : List(row.mask)) got.insert(e.name);
    EXPECT_EQ(row.expected, got) << "mask " << row.mask;
    if (row.expected.empty()) {
      EXPECT_EQ(platform::kErrorNoMoreFiles, s_.lib->LastError());
    }
  }
}

TEST_P(RealServerTest, DirectoriesAndErrorsKeepTheSessionUsable) {
  auto& lib = *s_.lib;
  ASSERT_TRUE(lib.CreateDirectory(s_.connection, "new dir"));
  struct stat st {};
  EXPECT_EQ(0, ::stat((server_->Root() + "/new dir").c_str(), &st));
  ASSERT_TRUE(lib.SetCurrentDirectory(s_.connection, "new dir"));
  std::string cwd;
  ASSERT_TRUE(lib.GetCurrentDirectory(s_.connection, cwd, 260));
  EXPECT_EQ("/new dir", cwd);
  EXPECT_FALSE(lib.GetCurrentDirectory(s_.connection, cwd, 8));  // "/new dir" + terminator needs 9
  EXPECT_EQ(platform::kErrorInsufficientBuffer, lib.LastError());
  ASSERT_TRUE(lib.SetCurrentDirectory(s_.connection, ".."));

  // Failures the server reports: 12003 with its reply; the next command works.
  EXPECT_FALSE(lib.SetCurrentDirectory(s_.connection, "missing"));
  EXPECT_EQ(platform::kErrorInternetExtendedError, lib.LastError());
  EXPECT_EQ('5', lib.LastResponseInfo().at(0));
  const std::string existing = local_ + "/keep";
  ASSERT_TRUE(WriteWholeFile(existing, "precious"));
  EXPECT_FALSE(lib.GetFile(s_.connection, "missing.bin", existing, false, 0, platform::kFtpTransferTypeBinary));
  EXPECT_EQ(platform::kErrorInternetExtendedError, lib.LastError());
  EXPECT_EQ("precious", ReadWholeFile(existing)) << "failed get damaged the local file";
  EXPECT_FALSE(lib.DeleteFile(s_.connection, "missing.bin"));
  EXPECT_TRUE(lib.RemoveDirectory(s_.connection, "new dir"));
  EXPECT_NE(0, ::stat((server_->Root() + "/new dir").c_str(), &st));
  EXPECT_TRUE(List("").empty());  // the root is empty again
}

TEST_P(RealServerTest, FailIfExistsRefusesAndKeepsTheFile) {
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/r.bin", "remote"));
  const std::string existing = local_ + "/r.bin";
  ASSERT_TRUE(WriteWholeFile(existing, "local"));
  EXPECT_FALSE(s_.lib->GetFile(s_.connection, "r.bin", existing, true, 0, platform::kFtpTransferTypeBinary));
  EXPECT_EQ("local", ReadWholeFile(existing));
  EXPECT_TRUE(s_.lib->GetFile(s_.connection, "r.bin", existing, false, 0, platform::kFtpTransferTypeBinary));
  EXPECT_EQ("remote", ReadWholeFile(existing));
}

TEST_P(RealServerTest, OpenFileReadsFullBlocksAndWritesThrough) {
  auto& lib = *s_.lib;
  const std::string bytes = PatternBytes(3 * 100000 + 17);
  InternetHandle w =
      lib.OpenFile(s_.connection, "stream.bin", platform::kGenericWrite, platform::kFtpTransferTypeBinary);
  ASSERT_NE(0u, w) << lib.LastResponseInfo();
  // Another command while the file is open is refused, not mixed in.
  EXPECT_FALSE(lib.CreateDirectory(s_.connection, "x"));
  EXPECT_EQ(platform::kErrorFtpTransferInProgress, lib.LastError());
  for (std::size_t pos = 0; pos < bytes.size(); pos += 65536) {
    std::uint32_t written = 0;
    const auto n = static_cast<std::uint32_t>(std::min<std::size_t>(65536, bytes.size() - pos));
    ASSERT_TRUE(lib.WriteFile(w, bytes.data() + pos, n, written));
    EXPECT_EQ(n, written);
  }
  ASSERT_TRUE(lib.CloseHandle(w)) << lib.LastResponseInfo();
  EXPECT_EQ(bytes, ReadWholeFile(server_->Root() + "/stream.bin"));

  InternetHandle r =
      lib.OpenFile(s_.connection, "stream.bin", platform::kGenericRead, platform::kFtpTransferTypeBinary);
  ASSERT_NE(0u, r);
  std::string back;
  std::vector<char> block(100000);
  std::uint32_t got = 0;
  do {
    ASSERT_TRUE(lib.ReadFile(r, block.data(), static_cast<std::uint32_t>(block.size()), got));
    // Every read but the last fills the block: short socket reads are not the end.
    if (back.size() + got < bytes.size()) {
      EXPECT_EQ(block.size(), got);
    }
    back.append(block.data(), got);
  } while (got != 0);
  EXPECT_EQ(bytes, back);
  ASSERT_TRUE(lib.CloseHandle(r));
}

// The buffered members read and write ASCII through an open file: the
// local side gets CR LF whatever the server sends, also when a block ends
// between the CR and the LF it adds.
TEST_P(RealServerTest, AsciiOpenFileReadsCrLfInBlocksOfAnySize) {
  auto& lib = *s_.lib;
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/unix.txt", "one\ntwo\n\nfour\nlast"));
  const std::string expected = "one\r\ntwo\r\n\r\nfour\r\nlast";
  for (std::uint32_t block_size : {1u, 2u, 3u, 4u, 7u, 4096u}) {
    SCOPED_TRACE(block_size);
    InternetHandle r = lib.OpenFile(s_.connection, "unix.txt", platform::kGenericRead, platform::kFtpTransferTypeAscii);
    ASSERT_NE(0u, r) << lib.LastResponseInfo();
    std::string back;
    std::vector<char> block(block_size);
    std::uint32_t got = 0;
    do {
      ASSERT_TRUE(lib.ReadFile(r, block.data(), block_size, got));
      if (back.size() + got < expected.size()) {
        EXPECT_EQ(block_size, got);
      }
      back.append(block.data(), got);
    } while (got != 0 && back.size() <= expected.size());
    EXPECT_EQ(expected, back);
    ASSERT_TRUE(lib.CloseHandle(r)) << lib.LastResponseInfo();
  }
  // Written in ASCII and read back in ASCII: the lines survive, each ending in CR LF here.
  InternetHandle w = lib.OpenFile(s_.connection, "up.txt", platform::kGenericWrite, platform::kFtpTransferTypeAscii);
  ASSERT_NE(0u, w) << lib.LastResponseInfo();
  std::uint32_t written = 0;
  ASSERT_TRUE(lib.WriteFile(w, "a\r", 2, written));
  ASSERT_TRUE(lib.WriteFile(w, "\nb\r\n", 4, written));
  ASSERT_TRUE(lib.CloseHandle(w)) << lib.LastResponseInfo();
  const std::string down = local_ + "/up.txt";
  ASSERT_TRUE(lib.GetFile(s_.connection, "up.txt", down, false, 0, platform::kFtpTransferTypeAscii));
  EXPECT_EQ("a\r\nb\r\n", ReadWholeFile(down));
}

TEST_P(RealServerTest, ClosingADownloadMidwayLeavesTheSessionInStep) {
  ASSERT_TRUE(WriteWholeFile(server_->Root() + "/big.bin", PatternBytes(32 << 20)));
  auto& lib = *s_.lib;
  const int fds_before = CountOpenDescriptors();
  for (int i = 0; i < 3; ++i) {
    InternetHandle r = lib.OpenFile(s_.connection, "big.bin", platform::kGenericRead, platform::kFtpTransferTypeBinary);
    ASSERT_NE(0u, r) << i << " " << lib.LastResponseInfo();
    std::vector<char> block(4096);
    std::uint32_t got = 0;
    ASSERT_TRUE(lib.ReadFile(r, block.data(), 4096, got));
    EXPECT_EQ(4096u, got);
    EXPECT_TRUE(lib.CloseHandle(r));
    std::string cwd;
    ASSERT_TRUE(lib.GetCurrentDirectory(s_.connection, cwd, 260))
        << "after abort " << i << ": " << lib.LastResponseInfo();
    EXPECT_EQ("/", cwd);
  }
  EXPECT_EQ(fds_before, CountOpenDescriptors());
}

TEST_P(RealServerTest, LargeFileOf64MiB) {
  const std::string bytes = PatternBytes(64u << 20);
  const std::string up = local_ + "/big.up", down = local_ + "/big.down";
  ASSERT_TRUE(WriteWholeFile(up, bytes));
  ASSERT_TRUE(s_.lib->PutFile(s_.connection, up, "big.bin", platform::kFtpTransferTypeBinary));
  ASSERT_TRUE(s_.lib->GetFile(s_.connection, "big.bin", down, false, 0, platform::kFtpTransferTypeBinary));
  EXPECT_TRUE(ReadWholeFile(down) == bytes);
  auto listed = List("big.bin");
  ASSERT_EQ(1u, listed.size());
  EXPECT_EQ(64u << 20, listed[0].size);
}

TEST_P(RealServerTest, LoginRefusedGivesTheServersReply) {
  LayerSession other;
  EXPECT_FALSE(other.Connect(server_->HostPort(), server_->User(), "wrong password"));
  EXPECT_EQ(platform::kErrorInternetExtendedError, other.lib->LastError());
  EXPECT_EQ(0u, other.lib->LastResponseInfo().rfind("530", 0)) << other.lib->LastResponseInfo();
}

TEST_P(RealServerTest, ManyOpenCloseCyclesLeakNothing) {
  // The full ten thousand where a login is cheap; the daemons that fork a
  // process per login take 4 to 10 ms each, so fewer rounds keep CI time low.
  const int rounds = GetParam() == FtpServerKind::kPyftpdlib ? 10000 : GetParam() == FtpServerKind::kProftpd ? 20 : 100;
  const int fds_before = CountOpenDescriptors();
  for (int i = 0; i < rounds; ++i) {
    LayerSession other;
    ASSERT_TRUE(other.Connect(server_->HostPort(), server_->User(), server_->Password())) << i;
  }
  EXPECT_EQ(fds_before, CountOpenDescriptors());
}

INSTANTIATE_TEST_SUITE_P(Servers, RealServerTest, ::testing::ValuesIn(AvailableFtpServers()),
                         [](const auto& info) { return FtpServerName(info.param); });

}  // namespace
}  // namespace tolva::testing
