#include "tolva/qt/display_check.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QThread>

#include <cstdlib>
#include <cstring>

namespace tolva::qt {

namespace {
bool Set(const char* name) {
  const char* v = std::getenv(name);
  return v && *v;
}
bool StartsWith(const char* v, const char* prefix) {
  return std::strncmp(v, prefix, std::strlen(prefix)) == 0;
}
}  // namespace

bool CanStartGui() noexcept {
  if (const char* platform = std::getenv("QT_QPA_PLATFORM"); platform && *platform) {
    if (StartsWith(platform, "offscreen") || StartsWith(platform, "minimal")) return true;
    if (StartsWith(platform, "wayland")) return Set("WAYLAND_DISPLAY");
    return Set("DISPLAY");
  }
  return Set("DISPLAY") || Set("WAYLAND_DISPLAY");
}

bool GuiReady() noexcept {
  auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (!app) return false;
  // Widgets belong to the application's thread; from any other the
  // services refuse rather than corrupt the toolkit.
  if (QThread::currentThread() != app->thread()) return false;
  return QGuiApplication::primaryScreen() != nullptr;
}

}  // namespace tolva::qt
