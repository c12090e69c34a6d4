// The server fixture itself: every available server starts, greets, and is
// gone (with its root) once the fixture is destroyed.
#include <signal.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/ftp_servers.h"

namespace tolva::testing {
namespace {

class FixtureTest : public ::testing::TestWithParam<FtpServerKind> {};

TEST_P(FixtureTest, StartsGreetsAndStopsWithoutLeftovers) {
  std::string why;
  std::string root;
  pid_t pid = -1;
  std::uint16_t port = 0;
  {
    auto server = FtpServer::Start(GetParam(), &why);
    ASSERT_TRUE(server) << why;
    root = server->Root();
    port = server->Port();
    struct stat st {};
    EXPECT_EQ(0, ::stat(root.c_str(), &st));
    EXPECT_TRUE(WaitForGreeting(port, 2000));
    EXPECT_TRUE(server->Running());
  }
  struct stat st {};
  EXPECT_NE(0, ::stat(root.c_str(), &st)) << "root left behind";
  EXPECT_FALSE(WaitForGreeting(port, 300)) << "server still answering";
  (void)pid;
}

INSTANTIATE_TEST_SUITE_P(Servers, FixtureTest, ::testing::ValuesIn(AvailableFtpServers()),
                         [](const auto& info) { return FtpServerName(info.param); });

}  // namespace
}  // namespace tolva::testing
