// The phrase builders every family's error texts are made from.
#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

// The shortened form of a path used inside every bracketed text.
std::string Short(Tolva2011Register& c, const std::string& path) {
  return c.FilePathShorten(path, "", 30, 2, 2, 2);
}

}  // namespace

std::string Tolva2011Register::ErrorMessageDoesNotExist(const std::string& argMessage,
                                                        const std::string& argFile) noexcept {
  return detail::Guarded(std::string(), [&] {
    if (argFile.empty()) return argMessage + " does not exist.";
    return argMessage + " [" + Short(*this, argFile) + "] does not exist.";
  });
}

std::string Tolva2011Register::ErrorMessageNotDefined(const std::string& argMessage) noexcept {
  return detail::Guarded(std::string(), [&] { return argMessage + " has not been defined."; });
}

Variant Tolva2011Register::ErrorMessageShortenFile(const std::string& Message1, const std::string& FilePath,
                                                   const std::string& Message2) noexcept {
  return detail::Guarded(Variant(), [&] {
    // The path is shortened in both forms, also when it is empty.
    const std::string head = Message1 + " [" + Short(*this, FilePath);
    return Variant::FromString(Message2.empty() ? head + "]." : head + "] " + Message2);
  });
}

}  // namespace tolva
