// The profile-file service of this platform: INI files read through a
// cache of parsed files and written under an exclusive lock, by way of a
// temporary file renamed over the original.
#ifndef TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_STORE_POSIX_H_
#define TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_STORE_POSIX_H_

#include <memory>
#include <string>

#include "platform/linux/profiles/profile_cache.h"
#include "tolva/platform/profile_store.h"

namespace tolva::platform::posix {

class PosixProfileStore : public ProfileStore {
 public:
  PosixProfileStore() = default;

  std::size_t GetString(const std::string& section, const std::string& key, const std::string& default_value,
                        std::string& out, std::size_t buffer_size, const std::string& file) override;
  // False when the file cannot be written, or when a name or the value holds
  // a line break or a NUL (it would split the line and change the file's
  // structure).
  bool WriteString(const std::string& section, const std::string& key, const std::string* value,
                   const std::string& file) override;
  std::size_t GetSystemString(const std::string& section, const std::string& key, const std::string& default_value,
                              std::string& out, std::size_t buffer_size) override;

  // The path a host's profile name stands for: "\" turned to "/", and a bare
  // name placed in the Windows-directory stand-in.
  static std::string Resolve(const std::string& file);
  // The system profile: "win.ini" in the Windows-directory stand-in.
  static std::string SystemProfile();

  const ProfileCache& cache() const noexcept { return cache_; }

 private:
  ProfileCache cache_;
};

// The service of this folder, as linux_services.cc assembles it.
std::shared_ptr<ProfileStore> NewProfileStore();

}  // namespace tolva::platform::posix

#endif  // TOLVA_SRC_PLATFORM_LINUX_PROFILES_PROFILE_STORE_POSIX_H_
