#include "platform/linux/system/system_info.h"

#include <limits.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "platform/linux/system/message_table.h"

namespace tolva::platform::posix {

std::uint32_t LinuxSystemInfo::TickCount() {
  timespec ts{};
  ::clock_gettime(CLOCK_MONOTONIC, &ts);
  const std::uint64_t ms =
      static_cast<std::uint64_t>(ts.tv_sec) * 1000u + static_cast<std::uint64_t>(ts.tv_nsec) / 1000000u;
  return static_cast<std::uint32_t>(ms);  // keep the low 32 bits: the counter wraps like the classic one
}

void LinuxSystemInfo::WaitForInput(std::uint32_t milliseconds) {
  const std::uint32_t slice = milliseconds < kWaitSliceMs ? milliseconds : kWaitSliceMs;
  timespec left{static_cast<time_t>(slice / 1000), static_cast<long>(slice % 1000) * 1000000L};
  // A signal cuts the sleep short; finish it, a short wait would only loop once more anyway.
  while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

DateTime LinuxSystemInfo::Now() {
  const time_t t = ::time(nullptr);
  tm local{};
  DateTime now;
  if (!::localtime_r(&t, &local)) return now;
  now.year = local.tm_year + 1900;
  now.month = local.tm_mon + 1;
  now.day = local.tm_mday;
  now.hour = local.tm_hour;
  now.minute = local.tm_min;
  now.second = local.tm_sec;
  return now;
}

bool LinuxSystemInfo::ComputerName(std::string& name) {
  char buffer[HOST_NAME_MAX + 1] = {};
  if (::gethostname(buffer, sizeof buffer - 1) == 0 && buffer[0] != '\0') {
    name = buffer;
    return true;
  }
  utsname u{};
  if (::uname(&u) == 0 && u.nodename[0] != '\0') {
    name = u.nodename;
    return true;
  }
  return false;
}

bool LinuxSystemInfo::UserName(std::string& name) {
  long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384u);
  passwd entry{};
  passwd* found = nullptr;
  int rc;
  // ERANGE: the entry does not fit; grow the buffer a few times, then give up.
  while ((rc = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE &&
         buffer.size() < (1u << 20)) {
    buffer.resize(buffer.size() * 2);
  }
  if (rc == 0 && found && found->pw_name && found->pw_name[0] != '\0') {
    name = found->pw_name;
    return true;
  }
  // No entry in the password database (a container with an arbitrary uid): the login environment.
  const char* user = std::getenv("USER");
  if (user && *user) {
    name = user;
    return true;
  }
  return false;
}

std::string LinuxSystemInfo::MessageText(std::int32_t number) {
  const char* text = MessageTableText(number);
  return text ? std::string(text) : std::string();
}

bool LinuxSystemInfo::Environment(const std::string& name, std::string& value) {
  const char* v = std::getenv(name.c_str());
  if (!v) return false;
  value = v;
  return true;
}

std::shared_ptr<SystemInfo> NewSystemInfo() {
  return std::make_shared<LinuxSystemInfo>();
}

}  // namespace tolva::platform::posix
