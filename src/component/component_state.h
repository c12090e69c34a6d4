// Everything a component instance owns: its properties, the platform
// services it works on, the host's container and events, and each family's
// own state. Families reach it through the facade's s_ member.
#ifndef TOLVA_SRC_COMPONENT_COMPONENT_STATE_H_
#define TOLVA_SRC_COMPONENT_COMPONENT_STATE_H_

#include <string>
#include <utility>

#include "ftp/ftp_state.h"
#include "settings/settings_state.h"
#include "textdata/textdata_state.h"
#include "tolva/events.h"
#include "tolva/host_container.h"
#include "tolva/host_types.h"
#include "tolva/platform/services.h"

namespace tolva::detail {

inline constexpr const char* kDefaultProgramName = "Tolva";
inline constexpr Single kDefaultFormSizeRatio = 0.75f;

// The persisted properties, and the one run-time property.
struct Properties {
  std::string directory_run;
  Single form_size_ratio = kDefaultFormSizeRatio;
  PictureRef icon;
  std::string program_author;
  std::string program_company;
  std::string program_name = kDefaultProgramName;
  std::string registry_app;
  std::string registry_backup_file;
  Boolean registry_backup_load = kFalse;
  Long ftp_security = 0;  // plain FTP
  std::string ftp_certificate_file;
  Long read_write_increment = 0;  // never set by a lifecycle handler
};

struct ComponentState {
  platform::Services services;
  HostContainer* container = nullptr;
  Tolva2011RegisterEvents* events = nullptr;

  Properties props;
  std::string dialog_filter;
  Long control_width = 0;  // design-time extent, kept equal to the picture's
  Long control_height = 0;
  // Number of the last failed internal operation (the "pending run-time
  // error"); 0 when none.
  Long last_runtime_error = 0;

  textdata::TextDataState text;
  ftp::SessionState ftp;
  settings::SettingsState settings;

  // Tells the host container that a property changed; a failing container
  // is ignored.
  void NotifyChanged(const char* name) noexcept {
    if (!container) return;
    try {
      container->PropertyChanged(name);
    } catch (...) {
    }
  }

  // Lets the host process its pending events once.
  void DoEvents() noexcept {
    if (!container) return;
    try {
      container->DoEvents();
    } catch (...) {
    }
  }

  // Raises an event: Raise(&Tolva2011RegisterEvents::SystemMessage, text).
  // A handler that throws is treated as a handler that returned.
  template <class... Params, class... Args>
  void Raise(void (Tolva2011RegisterEvents::*event)(Params...), Args&... args) noexcept {
    if (!events) return;
    try {
      (events->*event)(args...);
    } catch (...) {
    }
  }
};

// Runs `body` and returns its result, or `fallback` if anything escapes it,
// so that no failure ever reaches the host.
template <class R, class F>
R Guarded(R fallback, F&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return fallback;
  }
}

template <class F>
void GuardedVoid(F&& body) noexcept {
  try {
    body();
  } catch (...) {
  }
}

}  // namespace tolva::detail

#endif  // TOLVA_SRC_COMPONENT_COMPONENT_STATE_H_
