// Window services and the host's forms and controls. Measures of forms and
// controls are in twips (1/1440 inch); system metrics are in pixels. A
// toolkit binding implements these; without a display every call fails
// quietly and reports 0.
#ifndef TOLVA_PLATFORM_WINDOW_SERVICES_H_
#define TOLVA_PLATFORM_WINDOW_SERVICES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tolva/export.h"
#include "tolva/host_types.h"

namespace tolva {

class Form;

/// A control on a host form (a text box, a combo box, a button ...). Measures are in twips (1/1440 inch).
class TOLVA_EXPORT Control {
 public:
  /// Destroys this handle on the control, not the control.
  virtual ~Control() = default;
  /// The left edge, in twips from the parent's left.
  virtual Single Left() const = 0;
  /// Moves the left edge to `twips`.
  virtual void Left(Single twips) = 0;
  /// The top edge, in twips from the parent's top.
  virtual Single Top() const = 0;
  /// Moves the top edge to `twips`.
  virtual void Top(Single twips) = 0;
  /// The width, in twips.
  virtual Single Width() const = 0;
  /// Sets the width to `twips`.
  virtual void Width(Single twips) = 0;
  /// The height, in twips.
  virtual Single Height() const = 0;
  /// Sets the height to `twips`.
  virtual void Height(Single twips) = 0;
  /// The form the control sits on; nullptr for a form itself.
  virtual Form* Parent() const = 0;
};

/// A label: a control that can size itself to its text.
class TOLVA_EXPORT Label : public Control {
 public:
  /// With `on` true, the label takes the size of its text.
  virtual void AutoSize(bool on) = 0;
};

/// A host form: a top-level window, measured with its frame.
class TOLVA_EXPORT Form : public Control {
 public:
  /// 2 for a sizable form; anything else is a fixed border.
  virtual Integer BorderStyle() const = 0;
  /// 0 normal, 1 minimised, 2 maximised.
  virtual Integer WindowState() const = 0;
  /// A form sits on nothing: nullptr.
  Form* Parent() const override { return nullptr; }
  /// The standard styling of the form's controls (caption texts, fonts, the look of locked controls),
  /// applied before the form is sized around them. A form that cannot style its controls leaves them as they are.
  virtual void ApplyStandardStyle() {}
};

/// The font of a list box, as a text measure needs it.
struct FontSpec {
  /// The font family's name.
  std::string family;
  /// The size in points.
  double point_size = 0;
  /// Whether it is bold.
  bool bold = false;
  /// Whether it is italic.
  bool italic = false;
};

/// A list box whose rows are tab-separated text.
class TOLVA_EXPORT ListBox {
 public:
  /// Destroys this handle on the list box, not the list box.
  virtual ~ListBox() = default;
  /// The list's font.
  virtual FontSpec Font() const = 0;
  /// The number of rows.
  virtual Long ListCount() const = 0;
  /// The text of row `row`, counted from 0; "" outside the list.
  virtual std::string List(Long row) const = 0;
  /// LB_SETTABSTOPS: sets the tab `stops` in dialog units (4 = one average character).
  virtual void SetTabStops(const std::vector<Long>& stops) = 0;
  /// LB_SETHORIZONTALEXTENT: the scrollable width, `pixels`.
  virtual void SetHorizontalExtent(Long pixels) = 0;
};

namespace platform {

/// GetSystemMetrics index of the height of a window caption.
inline constexpr int kSmCyCaption = 4;
/// GetSystemMetrics index of the border width of a fixed dialog.
inline constexpr int kSmCxDlgFrame = 7;
/// GetSystemMetrics index of the height of a menu bar.
inline constexpr int kSmCyMenu = 15;
/// GetSystemMetrics index of the border width of a sizable window.
inline constexpr int kSmCxFrame = 32;

/// The screen area available to windows, in pixels.
struct WorkArea {
  /// @{
  /// Its left and top edges, width and height.
  double left = 0, top = 0, width = 0, height = 0;
  /// @}
};

/// What a standard file dialog is asked to show.
struct FileDialogRequest {
  bool save = false;         ///< a save dialog (asks before overwriting) rather than an open one
  std::string title;         ///< the window title; empty for the toolkit's own
  std::string filter;        ///< "Description|pattern; pattern|Description|pattern..."
  std::string initial_path;  ///< a directory, or a file to preselect; empty for the current directory
};

/// How a dialog ended: a file chosen, cancelled by the user, or no dialog could be shown.
enum class DialogOutcome { kChosen, kCancelled, kUnavailable };

/// How a file dialog ended and what was chosen.
struct FileDialogResult {
  /// How the dialog ended.
  DialogOutcome outcome = DialogOutcome::kUnavailable;
  std::string path;  ///< the chosen file when outcome is kChosen
};

/// What the About box shows.
struct AboutInfo {
  /// The calling program's name.
  std::string program_name;
  /// Its author.
  std::string program_author;
  /// Its company.
  std::string program_company;
  std::shared_ptr<const Picture> icon;  ///< may be null: the toolkit's information icon
};

/// A surface that measures text in one font. Measuring many strings with one measurer is what makes
/// tab-stop layout fast.
class TOLVA_EXPORT TextMeasurer {
 public:
  /// Releases the surface.
  virtual ~TextMeasurer() = default;
  /// Width of `text` in twips.
  virtual double TextWidthTwips(const std::string& text) = 0;
};

/// Window services: system metrics, the screen, message boxes, text measures and the standard dialogs.
/// A toolkit binding implements them; without a display every call fails quietly and reports 0.
class TOLVA_EXPORT WindowServices {
 public:
  /// Destroys the service.
  virtual ~WindowServices() = default;
  /// GetSystemMetrics(`index`), in pixels; 0 when unknown.
  virtual int SystemMetric(int index) = 0;
  /// Twips per pixel on the horizontal axis (15 at 96 dpi); 0 without a display.
  virtual double TwipsPerPixelX() = 0;
  /// Twips per pixel on the vertical axis (15 at 96 dpi); 0 without a display.
  virtual double TwipsPerPixelY() = 0;
  /// The screen area available to windows; all 0 without a display.
  virtual WorkArea ScreenWorkArea() = 0;
  /// A modal message box showing `text` under `caption`, with the classic buttons and icon `flags`; returns
  /// the pressed button's classic code (1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No), 0 on failure.
  virtual int MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) = 0;
  /// A measurer for `font`; nullptr without a display.
  virtual std::unique_ptr<TextMeasurer> NewTextMeasurer(const FontSpec& font) = 0;

  // The calls below have working defaults that report failure, so a window
  // service without a toolkit (a console, a test fake) needs none of them.

  /// A modal standard file dialog as `request` asks. kUnavailable when no dialog can be shown (the default,
  /// for a window service without a toolkit such as a console or a test fake).
  virtual FileDialogResult FileDialog(const FileDialogRequest& request) {
    (void)request;
    return {};
  }
  /// A modal About box showing `about`; false when none can be shown (the default).
  virtual bool AboutBox(const AboutInfo& about) {
    (void)about;
    return false;
  }
  /// A modal read-only viewer of the file at `path` (a local path with "/" separators) as text and as hex,
  /// titled `caption`; false when the file cannot be read or no viewer can be shown (the default). `error` then
  /// says why, in a sentence.
  virtual bool ViewFile(const std::string& path, const std::string& caption, std::string& error) {
    (void)path;
    (void)caption;
    error.clear();
    return false;
  }
  /// Opens `url` in the desktop's browser; false when it cannot be handed over (the default).
  virtual bool OpenUrl(const std::string& url) {
    (void)url;
    return false;
  }
};

}  // namespace platform
}  // namespace tolva

#endif  // TOLVA_PLATFORM_WINDOW_SERVICES_H_
