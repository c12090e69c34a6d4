// The standard dialogs, the About box, the file viewer and the browser:
// the component checks the arguments and words the failures; the window
// service shows the windows.
#include <string>

#include "component/component_state.h"
#include "tolva/tolva2011register.h"

namespace tolva {

namespace {

constexpr const char* kNoWindows = "No window can be shown on this display.";

// The platform boundary takes "/" only; hosts may write either separator.
std::string LocalPath(std::string path) {
  for (char& ch : path)
    if (ch == '\\') ch = '/';
  return path;
}

Boolean FileDialog(detail::ComponentState& s, bool save, std::string& file_path, std::string& error,
                   const std::string& title, const std::string& filter, const std::string& initial_path) {
  error.clear();
  if (!s.services.windows) {
    error = kNoWindows;
    return kFalse;
  }
  platform::FileDialogRequest request;
  request.save = save;
  request.title = title;
  request.filter = filter.empty() ? s.dialog_filter : filter;
  request.initial_path = LocalPath(initial_path);
  const platform::FileDialogResult result = s.services.windows->FileDialog(request);
  switch (result.outcome) {
    case platform::DialogOutcome::kChosen:
      file_path = result.path;
      return kTrue;
    case platform::DialogOutcome::kCancelled:
      return kFalse;  // a cancel is the user's answer, not an error
    case platform::DialogOutcome::kUnavailable:
      break;
  }
  error = kNoWindows;
  return kFalse;
}

}  // namespace

Boolean Tolva2011Register::DialogFileOpen2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title,
                                           const std::string& Filter, const std::string& InitialPath) noexcept {
  return detail::Guarded(kFalse,
                         [&] { return FileDialog(*s_, false, FilePath, ErrorMessage, Title, Filter, InitialPath); });
}

Boolean Tolva2011Register::DialogFileSave2(std::string& FilePath, std::string& ErrorMessage, const std::string& Title,
                                           const std::string& Filter, const std::string& InitialPath) noexcept {
  return detail::Guarded(kFalse,
                         [&] { return FileDialog(*s_, true, FilePath, ErrorMessage, Title, Filter, InitialPath); });
}

Boolean Tolva2011Register::ShowTolvaAboutBox(std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    platform::AboutInfo about;
    about.program_name = s_->props.program_name;
    about.program_author = s_->props.program_author;
    about.program_company = s_->props.program_company;
    about.icon = s_->props.icon;
    if (s_->services.windows && s_->services.windows->AboutBox(about)) return kTrue;
    ErrorMessage = kNoWindows;
    return kFalse;
  });
}

Boolean Tolva2011Register::ViewBinary(const std::string& FilePath, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    if (FilePath.empty()) {
      ErrorMessage = ErrorMessageNotDefined("File");
      return kFalse;
    }
    if (!IsTrue(FileExists(FilePath))) {
      ErrorMessage = ErrorMessageDoesNotExist("File", FilePath);
      return kFalse;
    }
    if (!s_->services.windows) {
      ErrorMessage = kNoWindows;
      return kFalse;
    }
    std::string why;
    if (s_->services.windows->ViewFile(LocalPath(FilePath), s_->props.program_name + " - " + FilePath, why))
      return kTrue;
    ErrorMessage = ErrorMessageShortenFile("File", FilePath, why.empty() ? "can't be shown." : why).AsString();
    return kFalse;
  });
}

Boolean Tolva2011Register::LoadURL(const std::string& URL, std::string& ErrorMessage) noexcept {
  return detail::Guarded(kFalse, [&] {
    ErrorMessage.clear();
    if (URL.find_first_not_of(" \t") == std::string::npos) {
      ErrorMessage = ErrorMessageNotDefined("URL");
      return kFalse;
    }
    if (s_->services.windows && s_->services.windows->OpenUrl(URL)) return kTrue;
    ErrorMessage = "URL [" + URL + "] can't be opened.";
    return kFalse;
  });
}

}  // namespace tolva
