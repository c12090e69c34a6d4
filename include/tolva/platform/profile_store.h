// The profile (INI) file interface: ProfileStore.
#ifndef TOLVA_PLATFORM_PROFILE_STORE_H_
#define TOLVA_PLATFORM_PROFILE_STORE_H_

#include <cstddef>
#include <string>

#include "tolva/export.h"

namespace tolva::platform {

/// Profile (INI) files, behaving as the classic profile API does on the same bytes: case-insensitive names,
/// blanks trimmed, first match wins, the file's formatting kept on write, and a write never leaves a
/// half-written file. A bare file name means the file in the Windows-directory stand-in.
class TOLVA_EXPORT ProfileStore {
 public:
  /// Destroys the service.
  virtual ~ProfileStore() = default;
  /// GetPrivateProfileString: the value of `key` in `section` of `file` into `out`, at most `buffer_size` - 1
  /// characters, or `default_value` (trimmed) when absent. Returns the number of characters placed in `out`.
  virtual std::size_t GetString(const std::string& section, const std::string& key, const std::string& default_value,
                                std::string& out, std::size_t buffer_size, const std::string& file) = 0;
  /// WritePrivateProfileString: sets `key` in `section` of `file` to `value`; a null `value` deletes the key.
  /// False when the file can't be written.
  virtual bool WriteString(const std::string& section, const std::string& key, const std::string* value,
                           const std::string& file) = 0;
  /// GetProfileString: GetString on the system profile.
  virtual std::size_t GetSystemString(const std::string& section, const std::string& key,
                                      const std::string& default_value, std::string& out, std::size_t buffer_size) = 0;
};

}  // namespace tolva::platform

#endif  // TOLVA_PLATFORM_PROFILE_STORE_H_
