// Built as C++23 where the compiler has it, for std::string's
// resize_and_overwrite; without it the string is zero-filled first, which
// is correct but touches every page once more.
#include "platform/linux/files/whole_file_read.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace tolva::platform::posix {

namespace {

// Below this a file is read by the calling thread alone: starting threads
// costs more than the faults they would share.
constexpr std::size_t kPartsFrom = 64u << 20;
constexpr unsigned kMostParts = 4;

struct Part {
  std::size_t offset = 0;
  std::size_t length = 0;
  std::size_t got = 0;
  int error = 0;
};

// Asks the kernel to fault in the pages wholly inside [p, p + n) in one
// call, which is cheaper than a trap for each page as the copy reaches it.
// Only a hint: a kernel without it (before 5.14) or a failure changes nothing.
void Prefault(char* p, std::size_t n) noexcept {
#ifndef MADV_POPULATE_WRITE
  constexpr int MADV_POPULATE_WRITE = 23;
#endif
  static const std::uintptr_t page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto from = (reinterpret_cast<std::uintptr_t>(p) + page - 1) & ~(page - 1);
  const auto to = (reinterpret_cast<std::uintptr_t>(p) + n) & ~(page - 1);
  if (to > from) ::madvise(reinterpret_cast<void*>(from), to - from, MADV_POPULATE_WRITE);
}

// Fills `part` of `data` from the same offset of the file, a step at a time
// with each step's pages faulted in first; stops early at the end of the file.
void ReadPart(int fd, char* data, Part& part) noexcept {
  constexpr std::size_t kStep = 8u << 20;
  while (part.got < part.length) {
    const std::size_t want = std::min(part.length - part.got, kStep);
    char* into = data + part.offset + part.got;
    if (want == kStep) Prefault(into, want);
    const ssize_t r = ::pread(fd, into, want, static_cast<off_t>(part.offset + part.got));
    if (r < 0) {
      if (errno == EINTR) continue;
      part.error = errno;
      return;
    }
    if (r == 0) return;
    part.got += static_cast<std::size_t>(r);
  }
}

// Asks for 2 MiB pages under the 2 MiB-aligned interior of a large buffer:
// a fresh gigabyte then takes 512 page faults instead of 262,144, and the
// faults, not the copy, are most of the cost of reading a file held in the
// page cache into new memory. Only a hint: with transparent huge pages off,
// or none to be had at once, the kernel hands out small pages as before.
void AdviseHugePages(char* p, std::size_t n) noexcept {
  constexpr std::uintptr_t kHuge = 2u << 20;
  const auto from = (reinterpret_cast<std::uintptr_t>(p) + kHuge - 1) & ~(kHuge - 1);
  const auto to = (reinterpret_cast<std::uintptr_t>(p) + n) & ~(kHuge - 1);
  if (to > from) ::madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
}

unsigned PartCount(std::size_t n) noexcept {
  if (n < kPartsFrom) return 1;
  const unsigned processors = std::max(1u, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::min<std::size_t>({processors, kMostParts, n / (kPartsFrom / 2)}));
}

// Reads n bytes into data; the bytes read, or an errno in `error`.
std::size_t ReadInto(int fd, char* data, std::size_t n, int& error) noexcept {
  const unsigned count = PartCount(n);
  if (n >= kPartsFrom) AdviseHugePages(data, n);
  std::array<Part, kMostParts> parts{};
  std::array<std::thread, kMostParts> helpers{};
  const std::size_t step = n / count;
  for (unsigned i = 0; i < count; ++i) {
    parts[i].offset = i * step;
    parts[i].length = i + 1 == count ? n - parts[i].offset : step;
  }
  // Parts 1.. go to helper threads; one that cannot be started is read here.
  for (unsigned i = 1; i < count; ++i) {
    try {
      helpers[i] = std::thread([fd, data, &part = parts[i]] { ReadPart(fd, data, part); });
    } catch (...) {  // no thread to be had: the part is read below
    }
  }
  ReadPart(fd, data, parts[0]);
  for (unsigned i = 1; i < count; ++i) {
    if (helpers[i].joinable())
      helpers[i].join();
    else
      ReadPart(fd, data, parts[i]);
  }

  // The bytes handed back are the file's from its start up to the first part
  // that came up short (the end of a file that shrank while it was read).
  std::size_t total = 0;
  for (unsigned i = 0; i < count; ++i) {
    const Part& part = parts[i];
    if (part.error != 0) {
      error = part.error;
      return 0;
    }
    total += part.got;
    if (part.got < part.length) break;
  }
  error = 0;
  return total;
}

}  // namespace

int ReadRegularFile(int fd, std::uint64_t size, std::string& out) {
  const auto n = static_cast<std::size_t>(size);
  int error = 0;
#if defined(__cpp_lib_string_resize_and_overwrite)
  std::string data;
  data.resize_and_overwrite(n, [&](char* p, std::size_t count) noexcept { return ReadInto(fd, p, count, error); });
#else
  std::string data(n, '\0');
  data.resize(ReadInto(fd, data.data(), n, error));
#endif
  if (error != 0) return error;
  out = std::move(data);
  return 0;
}

}  // namespace tolva::platform::posix
