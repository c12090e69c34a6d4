// Reading and writing one value of a profile (INI) file.
#include <string>

#include "component/component_state.h"
#include "paths/path_text.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {
// The classic buffer of the profile read: 1023 characters and the NUL.
constexpr std::size_t kProfileBuffer = 1024;
}  // namespace

std::string Tolva2011Register::FileReadProfileString(const std::string& FilePath, const std::string& Section,
                                                     const std::string& Key, const std::string& Default) noexcept {
  return detail::Guarded(Default, [&] {
    if (!s_->services.profiles) return Default;
    std::string value;
    const std::size_t n = s_->services.profiles->GetString(Section, Key, Default, value, kProfileBuffer, FilePath);
    // A key that is present but empty also yields the Default, untrimmed:
    // kept on purpose, hosts use it to tell "unset" from a value.
    if (n == 0) return Default;
    return std::string(paths::TrimBlanks(value));
  });
}

void Tolva2011Register::FileWriteProfileString(const std::string& FilePath, const std::string& Section,
                                               const std::string& Key, const std::string& Value) noexcept {
  detail::GuardedVoid([&] {
    if (!s_->services.profiles) return;
    // An empty value is written as a missing one, which removes the key.
    s_->services.profiles->WriteString(Section, Key, Value.empty() ? nullptr : &Value, FilePath);
  });
}

}  // namespace tolva
