#include "platform/linux/system/message_table.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace tolva::platform::posix {

namespace {

struct Entry {
  std::int32_t number;
  const char* text;
};

// Sorted by number. Where a classic run-time number and a system number
// coincide, the table holds the meaning this platform's services report:
// the low system numbers (2, 3, 5, 6, 18) come from the settings store and
// the FTP layer, 7 and 52-76 from the local file services.
constexpr Entry kEntries[] = {
    {2, "The system cannot find the file specified."},
    {3, "The system cannot find the path specified."},
    {5, "Access is denied."},
    {6, "The handle is invalid."},
    {7, "Out of memory"},
    {8, "Not enough memory resources are available to process this command."},
    {18, "There are no more files."},
    {32, "The process cannot access the file because it is being used by another process."},
    {52, "Bad file name or number"},
    {53, "File not found"},
    {54, "Bad file mode"},
    {55, "File already open"},
    {57, "Device I/O error"},
    {58, "File already exists"},
    {61, "Disk full"},
    {62, "Input past end of file"},
    {63, "Bad record number"},
    {67, "Too many files"},
    {68, "Device unavailable"},
    {70, "Permission denied"},
    {71, "Disk not ready"},
    {74, "Can't rename with different drive"},
    {75, "Path/File access error"},
    {76, "Path not found"},
    {80, "The file exists."},
    {87, "The parameter is incorrect."},
    {112, "There is not enough space on the disk."},
    {122, "The data area passed to a system call is too small."},
    {183, "Cannot create a file when that file already exists."},
    {259, "No more data is available."},
    {12001, "No more Internet handles can be allocated"},
    {12002, "The operation timed out"},
    {12003, "The server returned extended information"},
    {12004, "An internal error occurred in the Internet library"},
    {12005, "The URL is invalid"},
    {12006, "The URL does not use a recognized protocol"},
    {12007, "The server name or address could not be resolved"},
    {12008, "A protocol with the required capabilities was not found"},
    {12009, "The option is invalid"},
    {12010, "The length is incorrect for the option type"},
    {12011, "The option value cannot be set"},
    {12012, "Internet support has been shut down"},
    {12013, "The user name was not allowed"},
    {12014, "The password was not allowed"},
    {12015, "The login request was denied"},
    {12016, "The requested operation is invalid"},
    {12017, "The operation has been canceled"},
    {12018, "The supplied handle is the wrong type for the requested operation"},
    {12019, "The handle is in the wrong state for the requested operation"},
    {12020, "The request cannot be made on a proxy session"},
    {12021, "The settings value could not be found"},
    {12022, "The settings parameter is incorrect"},
    {12023, "Direct Internet access is not available"},
    {12024, "No context value was supplied"},
    {12025, "Status callback is not available"},
    {12026, "There are outstanding requests"},
    {12027, "The information format is incorrect"},
    {12028, "The requested item could not be found"},
    {12029, "A connection with the server could not be established"},
    {12030, "The connection with the server was terminated abnormally"},
    {12031, "The connection with the server was reset"},
    {12037, "The server's certificate has expired or is not yet valid"},
    {12038, "The server's certificate does not name the host that was asked for"},
    {12045, "The server's certificate is not signed by a trusted authority"},
    {12110, "There is already an FTP request in progress on this session"},
    {12111, "The FTP session was terminated"},
    {12112, "Passive mode is not available on the server"},
    {12157, "The secure (TLS) connection to the server could not be set up"},
};

const char* ClassicText(int number) noexcept {
  const char* text = MessageTableText(number);
  return text ? text : "";
}

}  // namespace

const char* MessageTableText(std::int32_t number) noexcept {
  const auto* end = std::end(kEntries);
  const auto* it =
      std::lower_bound(std::begin(kEntries), end, number, [](const Entry& e, std::int32_t n) { return e.number < n; });
  return it != end && it->number == number ? it->text : nullptr;
}

std::vector<std::int32_t> MessageTableNumbers() {
  std::vector<std::int32_t> numbers;
  numbers.reserve(std::size(kEntries));
  for (const Entry& e : kEntries) numbers.push_back(e.number);
  return numbers;
}

ClassicRuntimeError ClassicRuntimeErrorFromErrno(int err) noexcept {
  int number = 75;  // Path/File access error: what a host sees for anything unexpected
  switch (err) {
    case 0:
      return {0, ""};
    case ENOENT:
      number = 53;
      break;
    case ENOTDIR:
    case ELOOP:
      number = 76;
      break;
    case EACCES:
    case EPERM:
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:
      number = 70;
      break;
    case EEXIST:
      number = 58;
      break;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      number = 61;
      break;
    case EIO:
      number = 57;
      break;
    case EMFILE:
    case ENFILE:
      number = 67;
      break;
    case ENAMETOOLONG:
    case EINVAL:
    case EBADF:
      number = 52;
      break;
    case ENOMEM:
      number = 7;
      break;
    case EXDEV:
      number = 74;
      break;
    case ENXIO:
    case ENODEV:
      number = 68;
      break;
    case ENOMEDIUM:
      number = 71;
      break;
    default:
      break;
  }
  return {number, ClassicText(number)};
}

}  // namespace tolva::platform::posix
