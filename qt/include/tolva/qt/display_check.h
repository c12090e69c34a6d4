// Whether Qt widgets can be used at all: CanStartGui() and GuiReady().
#ifndef TOLVA_QT_DISPLAY_CHECK_H_
#define TOLVA_QT_DISPLAY_CHECK_H_

#include "tolva/export.h"

namespace tolva::qt {

/// True when a QApplication could be constructed here: a platform plugin that needs no display was asked for
/// (QT_QPA_PLATFORM=offscreen or minimal), or DISPLAY / WAYLAND_DISPLAY names a display. QApplication aborts the
/// process when it finds no display, so a host calls this before creating the application object.
TOLVA_QT_EXPORT bool CanStartGui() noexcept;

/// True when a QApplication exists on this thread and has a screen: the window services work only then.
TOLVA_QT_EXPORT bool GuiReady() noexcept;

}  // namespace tolva::qt

#endif  // TOLVA_QT_DISPLAY_CHECK_H_
