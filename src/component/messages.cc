// The system's text for an error number, and the four message boxes.
#include <cstdint>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// The message table is asked for at most this many characters; a longer
// text does not fit and counts as none.
constexpr std::size_t kMessageBuffer = 512;

// Message-box flags: the icon of each box.
constexpr std::uint32_t kIconStop = 0x10;
constexpr std::uint32_t kIconQuestion = 0x20;
constexpr std::uint32_t kIconExclamation = 0x30;
constexpr std::uint32_t kIconInformation = 0x40;

}  // namespace

std::string Tolva2011Register::FormatErrorMessage(Long ErrorNumber) noexcept {
  return detail::Guarded(std::string(), [&] {
    if (ErrorNumber == 0) return std::string();
    std::string text;
    if (s_->services.system) text = s_->services.system->MessageText(ErrorNumber);
    if (text.empty() || text.size() > kMessageBuffer) return "Error Number = " + std::to_string(ErrorNumber);
    return text;
  });
}

namespace {

int ShowBox(detail::ComponentState& s, const std::string& text, const char* word, std::uint32_t flags) {
  if (!s.services.windows) return 0;
  return s.services.windows->MessageBox(text, s.props.program_name + word, flags);
}

}  // namespace

void Tolva2011Register::MessageError(const std::string& ErrorMessage) noexcept {
  detail::GuardedVoid([&] { ShowBox(*s_, ErrorMessage, " Error", kIconStop); });
}

void Tolva2011Register::MessageInfo(const std::string& ErrorMessage) noexcept {
  detail::GuardedVoid([&] { ShowBox(*s_, ErrorMessage, " Information", kIconInformation); });
}

void Tolva2011Register::MessageWarn(const std::string& ErrorMessage) noexcept {
  detail::GuardedVoid([&] { ShowBox(*s_, ErrorMessage, " Warning", kIconExclamation); });
}

Variant Tolva2011Register::MessageQuery(const std::string& ErrorMessage, Long Buttons) noexcept {
  return detail::Guarded(Variant(), [&] {
    // The question icon is added to whatever the host passes, as it always
    // was; a host passes only the button set and default-button bits.
    const std::int64_t flags = static_cast<std::int64_t>(Buttons) + kIconQuestion;
    if (flags > INT32_MAX) return Variant();  // the sum overflows a Long: no box
    const int pressed = ShowBox(*s_, ErrorMessage, " Query", static_cast<std::uint32_t>(flags));
    if (pressed == 0) return Variant();  // no box could be shown
    return Variant::FromLong(pressed);
  });
}

}  // namespace tolva
