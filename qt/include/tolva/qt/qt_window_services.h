// The component's window services on Qt Widgets: QtWindowServices and QtServices().
#ifndef TOLVA_QT_QT_WINDOW_SERVICES_H_
#define TOLVA_QT_QT_WINDOW_SERVICES_H_

#include <memory>
#include <string>

#include "tolva/export.h"
#include "tolva/platform/services.h"
#include "tolva/platform/window_services.h"

/// The Qt Widgets binding: window services, and Qt widgets seen as the host's forms, labels and list boxes.
namespace tolva::qt {

/// The component's window services on Qt Widgets: metrics from the style, resolution and work area from the
/// primary screen, message boxes, text measures from font metrics, file dialogs, an About box, a file viewer
/// and the desktop's URL opener.
///
/// Every call must come from the thread of the QApplication. Without a QApplication (or without a screen)
/// every call fails quietly: 0 for a measure, 0 for a message box, kUnavailable for a dialog.
class TOLVA_QT_EXPORT QtWindowServices : public platform::WindowServices {
 public:
  /// GetSystemMetrics(`index`) in pixels, from the style; SM_CXSCREEN (0) and SM_CYSCREEN (1) give the
  /// full screen.
  int SystemMetric(int index) override;
  /// 1440 / the primary screen's logical dots per inch.
  double TwipsPerPixelX() override;
  /// 1440 / the primary screen's logical dots per inch.
  double TwipsPerPixelY() override;
  platform::WorkArea ScreenWorkArea() override;
  int MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) override;
  std::unique_ptr<platform::TextMeasurer> NewTextMeasurer(const FontSpec& font) override;
  platform::FileDialogResult FileDialog(const platform::FileDialogRequest& request) override;
  bool AboutBox(const platform::AboutInfo& about) override;
  bool ViewFile(const std::string& path, const std::string& caption, std::string& error) override;
  bool OpenUrl(const std::string& url) override;
};

/// The services bundle of this platform with Qt window services in place of the console's.
TOLVA_QT_EXPORT platform::Services QtServices() noexcept;

}  // namespace tolva::qt

#endif  // TOLVA_QT_QT_WINDOW_SERVICES_H_
