// The computer's and the signed-in user's names.
#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// The names have always been fetched into a buffer of this many
// characters; a name that does not fit, with its terminator, is no name.
constexpr std::size_t kNameBuffer = 255;

}  // namespace

std::string Tolva2011Register::ComputerName() noexcept {
  return detail::Guarded(std::string(), [&] {
    std::string name;
    if (!s_->services.system || !s_->services.system->ComputerName(name)) return std::string();
    if (name.size() + 1 > kNameBuffer) return std::string();
    return name;
  });
}

std::string Tolva2011Register::UserName() noexcept {
  return detail::Guarded(std::string(), [&] {
    std::string name;
    if (!s_->services.system || !s_->services.system->UserName(name)) return std::string();
    if (name.size() + 1 > kNameBuffer) return std::string();
    // The user-name call reports a length that counts the terminating NUL,
    // and that NUL has always come back at the end of the name. Kept on
    // purpose: hosts that compare or strip it rely on it.
    name.push_back('\0');
    return name;
  });
}

}  // namespace tolva
