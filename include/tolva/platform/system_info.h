// The system information interface: SystemInfo.
#ifndef TOLVA_PLATFORM_SYSTEM_INFO_H_
#define TOLVA_PLATFORM_SYSTEM_INFO_H_

#include <cstdint>
#include <string>

#include "tolva/export.h"

namespace tolva::platform {

/// Local date and time.
struct DateTime {
  /// @{
  /// The calendar fields: year, month (1-12), day (1-31), hour (0-23), minute and second.
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  /// @}
};

/// System information: the tick counter, the wait, names, the clock and the system message table.
class TOLVA_EXPORT SystemInfo {
 public:
  /// Destroys the service.
  virtual ~SystemInfo() = default;
  /// GetTickCount: milliseconds since an arbitrary start, wrapping at 2^32.
  virtual std::uint32_t TickCount() = 0;
  /// MsgWaitForMultipleObjects with no handles: returns after `milliseconds` or earlier when input for the
  /// host arrives.
  virtual void WaitForInput(std::uint32_t milliseconds) = 0;
  /// The machine's local date and time now.
  virtual DateTime Now() = 0;
  /// GetComputerName: the machine's name into `name`; false when it can't be had.
  virtual bool ComputerName(std::string& name) = 0;
  /// GetUserName: the user's name into `name`; false when it can't be had.
  virtual bool UserName(std::string& name) = 0;
  /// FormatMessage: a one-line text for the system error `number`, "" when the table has none.
  virtual std::string MessageText(std::int32_t number) = 0;
  /// The value of the environment variable `name` into `value`; false when it is not set.
  virtual bool Environment(const std::string& name, std::string& value) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_SYSTEM_INFO_H_
