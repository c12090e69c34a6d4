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

// A control on a host form (a text box, a combo box, a button ...).
class TOLVA_EXPORT Control {
 public:
  virtual ~Control() = default;
  virtual Single Left() const = 0;
  virtual void Left(Single twips) = 0;
  virtual Single Top() const = 0;
  virtual void Top(Single twips) = 0;
  virtual Single Width() const = 0;
  virtual void Width(Single twips) = 0;
  virtual Single Height() const = 0;
  virtual void Height(Single twips) = 0;
  // The form the control sits on; nullptr for a form itself.
  virtual Form* Parent() const = 0;
};

// A label: a control that can size itself to its text.
class TOLVA_EXPORT Label : public Control {
 public:
  virtual void AutoSize(bool on) = 0;
};

// A host form.
class TOLVA_EXPORT Form : public Control {
 public:
  // 2 = sizable; anything else is a fixed border.
  virtual Integer BorderStyle() const = 0;
  // 0 normal, 1 minimised, 2 maximised.
  virtual Integer WindowState() const = 0;
  Form* Parent() const override { return nullptr; }
  // The standard styling of the form's controls (caption texts, fonts, the
  // look of locked controls), applied before the form is sized around them.
  // A form that cannot style its controls leaves them as they are.
  virtual void ApplyStandardStyle() {}
};

// The font of a list box, as a text measure needs it.
struct FontSpec {
  std::string family;
  double point_size = 0;
  bool bold = false;
  bool italic = false;
};

// A list box whose rows are tab-separated text.
class TOLVA_EXPORT ListBox {
 public:
  virtual ~ListBox() = default;
  virtual FontSpec Font() const = 0;
  virtual Long ListCount() const = 0;
  virtual std::string List(Long row) const = 0;
  // LB_SETTABSTOPS: tab stops in dialog units (4 = one average character).
  virtual void SetTabStops(const std::vector<Long>& stops) = 0;
  // LB_SETHORIZONTALEXTENT: the scrollable width in pixels.
  virtual void SetHorizontalExtent(Long pixels) = 0;
};

namespace platform {

// GetSystemMetrics indexes the members ask for.
inline constexpr int kSmCyCaption = 4;
inline constexpr int kSmCxDlgFrame = 7;
inline constexpr int kSmCyMenu = 15;
inline constexpr int kSmCxFrame = 32;

// The screen area available to windows, in pixels.
struct WorkArea {
  double left = 0, top = 0, width = 0, height = 0;
};

// What a standard file dialog is asked to show.
struct FileDialogRequest {
  bool save = false;         // a save dialog (asks before overwriting) rather than an open one
  std::string title;         // the window title; empty for the toolkit's own
  std::string filter;        // "Description|pattern; pattern|Description|pattern..."
  std::string initial_path;  // a directory, or a file to preselect; empty for the current directory
};

// How a dialog ended.
enum class DialogOutcome { kChosen, kCancelled, kUnavailable };

struct FileDialogResult {
  DialogOutcome outcome = DialogOutcome::kUnavailable;
  std::string path;  // the chosen file when outcome is kChosen
};

// What the About box shows.
struct AboutInfo {
  std::string program_name;
  std::string program_author;
  std::string program_company;
  std::shared_ptr<const Picture> icon;  // may be null: the toolkit's information icon
};

// A surface that measures text in one font. Measuring many strings with one
// measurer is what makes tab-stop layout fast.
class TOLVA_EXPORT TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;
  // Width of `text` in twips.
  virtual double TextWidthTwips(const std::string& text) = 0;
};

class TOLVA_EXPORT WindowServices {
 public:
  virtual ~WindowServices() = default;
  // GetSystemMetrics(index), in pixels; 0 when unknown.
  virtual int SystemMetric(int index) = 0;
  // Twips per pixel on the horizontal / vertical axis (15 at 96 dpi); 0 without a display.
  virtual double TwipsPerPixelX() = 0;
  virtual double TwipsPerPixelY() = 0;
  virtual WorkArea ScreenWorkArea() = 0;
  // A modal message box; returns the pressed button's classic code
  // (1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No), 0 on failure.
  virtual int MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) = 0;
  // A measurer for `font`; nullptr without a display.
  virtual std::unique_ptr<TextMeasurer> NewTextMeasurer(const FontSpec& font) = 0;

  // The calls below have working defaults that report failure, so a window
  // service without a toolkit (a console, a test fake) needs none of them.

  // A modal standard file dialog. kUnavailable when no dialog can be shown.
  virtual FileDialogResult FileDialog(const FileDialogRequest& request) {
    (void)request;
    return {};
  }
  // A modal About box; false when none can be shown.
  virtual bool AboutBox(const AboutInfo& about) {
    (void)about;
    return false;
  }
  // A modal read-only viewer of the file at `path` (a local path with "/"
  // separators) as text and as hex; false when the file cannot be read or no
  // viewer can be shown. `error` then says why, in a sentence.
  virtual bool ViewFile(const std::string& path, const std::string& caption, std::string& error) {
    (void)path;
    (void)caption;
    error.clear();
    return false;
  }
  // Opens `url` in the desktop's browser; false when it cannot be handed over.
  virtual bool OpenUrl(const std::string& url) {
    (void)url;
    return false;
  }
};

}  // namespace platform
}  // namespace tolva

#endif  // TOLVA_PLATFORM_WINDOW_SERVICES_H_
