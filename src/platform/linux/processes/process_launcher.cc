#include "platform/linux/processes/process_launcher.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

extern char** environ;

namespace tolva::platform::posix {

bool SplitCommandLine(const std::string& line, std::vector<std::string>& words) {
  words.clear();
  std::string word;
  bool in_word = false;
  std::size_t i = 0;
  const std::size_t n = line.size();
  while (i < n) {
    const char c = line[i];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
      if (in_word) words.push_back(std::move(word));
      word.clear();
      in_word = false;
      ++i;
    } else if (c == '\'') {
      const std::size_t close = line.find('\'', i + 1);
      if (close == std::string::npos) return false;
      word.append(line, i + 1, close - i - 1);
      in_word = true;
      i = close + 1;
    } else if (c == '"') {
      in_word = true;
      ++i;
      for (;;) {
        if (i >= n) return false;
        const char d = line[i];
        if (d == '"') {
          ++i;
          break;
        }
        // Inside double quotes a backslash escapes only these; elsewhere it is kept.
        if (d == '\\' && i + 1 < n && std::strchr("\\\"$`\n", line[i + 1]) && line[i + 1] != '\0') {
          if (line[i + 1] != '\n') word += line[i + 1];
          i += 2;
        } else {
          word += d;
          ++i;
        }
      }
    } else if (c == '\\') {
      if (i + 1 >= n) return false;
      if (line[i + 1] != '\n') {  // backslash-newline joins lines
        word += line[i + 1];
        in_word = true;
      }
      i += 2;
    } else {
      word += c;
      in_word = true;
      ++i;
    }
  }
  if (in_word) words.push_back(std::move(word));
  return true;
}

namespace {

// What the children report through the pipe: the program's process id, or
// the errno of a step that failed. Each message is one write of 8 bytes,
// well under PIPE_BUF, so messages from both children never interleave.
struct Report {
  int kind;  // kPid or kFailed
  int value;
};
constexpr int kPid = 1;
constexpr int kFailed = 2;

void Send(int fd, int kind, int value) {
  const Report r{kind, value};
  ssize_t w;
  do {
    w = ::write(fd, &r, sizeof r);
  } while (w < 0 && errno == EINTR);
}

// Candidate paths of the program, computed before forking: after fork()
// in a threaded host the children may only make async-signal-safe calls.
std::vector<std::string> Candidates(const std::string& program) {
  std::vector<std::string> out;
  if (program.find('/') != std::string::npos) {
    out.push_back(program);
    return out;
  }
  const char* env = std::getenv("PATH");
  const std::string path = env && *env ? env : "/usr/local/bin:/usr/bin:/bin";
  std::size_t start = 0;
  for (;;) {
    const std::size_t colon = path.find(':', start);
    std::string dir = path.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
    if (dir.empty()) dir = ".";
    out.push_back(dir + "/" + program);
    if (colon == std::string::npos) break;
    start = colon + 1;
  }
  return out;
}

// Runs in the grandchild: never returns.
[[noreturn]] void ExecProgram(int report_fd, const std::vector<std::string>& candidates, char* const argv[]) {
  ::setsid();  // its own session: a Ctrl+C meant for the host does not reach it
  sigset_t all;
  ::sigemptyset(&all);
  ::sigprocmask(SIG_SETMASK, &all, nullptr);
  struct sigaction dfl {};
  dfl.sa_handler = SIG_DFL;
  ::sigaction(SIGPIPE, &dfl, nullptr);
  // The host's own descriptors (sockets, databases) must not leak into the program.
  if (::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
    for (int fd = 3; fd < 1024; ++fd) {
      if (fd != report_fd) ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    }
  }
  int err = ENOENT;
  for (const std::string& c : candidates) {
    ::execve(c.c_str(), argv, environ);
    // Keep looking on the path after a miss; remember a refusal to report it.
    if (errno != ENOENT && errno != ENOTDIR) err = errno;
  }
  Send(report_fd, kFailed, err);
  ::_exit(127);
}

}  // namespace

bool LinuxProcessLauncher::Start(const std::string& command_line, int /*window_style*/, int& process_id) {
  std::vector<std::string> words;
  if (!SplitCommandLine(command_line, words) || words.empty() || words[0].empty()) return false;
  const std::vector<std::string> candidates = Candidates(words[0]);
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);

  int fds[2];
  if (::pipe2(fds, O_CLOEXEC) != 0) return false;
  const pid_t middle = ::fork();
  if (middle < 0) {
    ::close(fds[0]);
    ::close(fds[1]);
    return false;
  }
  if (middle == 0) {
    ::close(fds[0]);
    const pid_t program = ::fork();
    if (program == 0) ExecProgram(fds[1], candidates, argv.data());
    if (program < 0)
      Send(fds[1], kFailed, errno);
    else
      Send(fds[1], kPid, static_cast<int>(program));
    ::_exit(0);
  }
  ::close(fds[1]);
  int status = 0;
  while (::waitpid(middle, &status, 0) < 0 && errno == EINTR) {
  }
  // Read until both children have let go of the pipe: the intermediate by
  // exiting, the program by a successful exec (the pipe is close-on-exec)
  // or by reporting its failure and exiting.
  int pid = 0;
  bool failed = false;
  Report r{};
  for (;;) {
    const ssize_t got = ::read(fds[0], &r, sizeof r);
    if (got < 0 && errno == EINTR) continue;
    if (got != static_cast<ssize_t>(sizeof r)) break;
    if (r.kind == kPid) pid = r.value;
    if (r.kind == kFailed) failed = true;
  }
  ::close(fds[0]);
  if (failed || pid <= 0) return false;
  process_id = pid;
  return true;
}

bool LinuxProcessLauncher::Activate(int /*process_id*/) {
  return false;
}

std::shared_ptr<ProcessLauncher> NewProcessLauncher() {
  return std::make_shared<LinuxProcessLauncher>();
}

}  // namespace tolva::platform::posix
