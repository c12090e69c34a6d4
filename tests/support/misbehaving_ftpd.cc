#include "support/misbehaving_ftpd.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>

namespace tolva::testing {
namespace {

bool Exists(const std::string& path) {
  return ::access(path.c_str(), R_OK) == 0;
}

// The script sits beside this source file. Compilers may record this file's
// path relative to the build directory, so also look upwards from the test
// executable (build trees live inside the source tree).
std::string FindScript() {
  const char* kRelative = "tests/support/misbehaving_ftpd.py";
  std::string here = __FILE__;
  const auto slash = here.rfind('/');
  if (slash != std::string::npos && here[0] == '/' && Exists(here.substr(0, slash) + "/misbehaving_ftpd.py")) {
    return here.substr(0, slash) + "/misbehaving_ftpd.py";
  }
  if (const char* env = std::getenv("TOLVA_SOURCE_DIR")) {
    if (Exists(std::string(env) + "/" + kRelative)) return std::string(env) + "/" + kRelative;
  }
  char exe[4096] = {};
  const ssize_t n = ::readlink("/proc/self/exe", exe, sizeof exe - 1);
  std::string dir = n > 0 ? std::string(exe, static_cast<std::size_t>(n)) : std::string();
  while (!dir.empty()) {
    const auto cut = dir.rfind('/');
    if (cut == std::string::npos) break;
    dir.resize(cut);
    if (Exists(dir + "/" + kRelative)) return dir + "/" + kRelative;
  }
  return kRelative;
}

}  // namespace

std::unique_ptr<MisbehavingFtpd> MisbehavingFtpd::Start(const std::string& scenario_json, std::string* why) {
  std::unique_ptr<MisbehavingFtpd> server(new MisbehavingFtpd());
  server->work_ = MakeTempDir("tolva-misftpd-");
  const std::string script = FindScript();
  const std::string port_file = server->work_ + "/port";
  if (server->work_.empty() ||
      !server->process_.Spawn({"/usr/bin/python3", script, port_file, server->work_ + "/commands.log", scenario_json},
                              server->work_ + "/server.log")) {
    if (why) *why = "cannot start " + script;
    return nullptr;
  }
  for (int i = 0; i < 200 && server->port_ == 0; ++i) {
    const std::string text = ReadWholeFile(port_file);
    if (!text.empty())
      server->port_ = static_cast<std::uint16_t>(std::atoi(text.c_str()));
    else if (!server->process_.Running())
      break;
    else
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
  if (server->port_ == 0) {
    if (why) *why = "did not start: " + ReadWholeFile(server->work_ + "/server.log");
    return nullptr;
  }
  return server;
}

MisbehavingFtpd::~MisbehavingFtpd() {
  process_.Stop();
  RemoveTree(work_);
}

std::vector<std::string> MisbehavingFtpd::Commands() const {
  std::vector<std::string> lines;
  std::istringstream in(ReadWholeFile(work_ + "/commands.log"));
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

int MisbehavingFtpd::Count(const std::string& verb) const {
  int n = 0;
  for (const auto& line : Commands()) {
    if (line.compare(0, verb.size(), verb) == 0 && (line.size() == verb.size() || line[verb.size()] == ' ')) ++n;
  }
  return n;
}

}  // namespace tolva::testing
