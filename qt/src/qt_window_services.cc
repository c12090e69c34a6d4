#include "tolva/qt/qt_window_services.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QMenuBar>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QStyle>
#include <QUrl>

#include "file_viewer.h"
#include "message_box.h"
#include "tolva/qt/display_check.h"
#include "tolva/qt/name_filters.h"

namespace tolva::qt {

namespace {

QString Q(const std::string& s) {
  return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

// Measures as the classic text-width call does: the sum of the characters'
// advances, without kerning. Printable ASCII (most of any list) is summed
// from a per-character table; anything else is shaped by Qt.
class FontMeasurer : public platform::TextMeasurer {
 public:
  FontMeasurer(const QFont& font, double twips_per_pixel)
      : metrics_(Unkerned(font)), twips_per_pixel_(twips_per_pixel) {
    for (int ch = 0x20; ch < 0x7F; ++ch) ascii_[ch - 0x20] = metrics_.horizontalAdvance(QChar(ch));
  }
  double TextWidthTwips(const std::string& text) override {
    double pixels = 0;
    for (char ch : text) {
      const auto b = static_cast<unsigned char>(ch);
      if (b < 0x20 || b >= 0x7F) return metrics_.horizontalAdvance(Q(text)) * twips_per_pixel_;
      pixels += ascii_[b - 0x20];
    }
    return pixels * twips_per_pixel_;
  }

 private:
  static QFont Unkerned(QFont font) {
    font.setKerning(false);
    return font;
  }
  QFontMetricsF metrics_;  // one metrics object for every string: font resolution happens once
  double twips_per_pixel_;
  double ascii_[0x7F - 0x20] = {};
};

double TwipsPerPixel(double dpi) {
  return dpi > 0 ? 1440.0 / dpi : 0;
}

}  // namespace

int QtWindowServices::SystemMetric(int index) {
  if (!GuiReady()) return 0;
  QStyle* style = QApplication::style();
  switch (index) {
    case 0:
      return QGuiApplication::primaryScreen()->geometry().width();
    case 1:
      return QGuiApplication::primaryScreen()->geometry().height();
    case platform::kSmCyCaption:
      return style->pixelMetric(QStyle::PM_TitleBarHeight);
    case platform::kSmCyMenu: {
      // A menu bar's height depends on the style and the menu font; a
      // throw-away bar with one menu reports it.
      QMenuBar bar;
      bar.addMenu(QStringLiteral("File"));
      return bar.sizeHint().height();
    }
    case platform::kSmCxDlgFrame:
      return style->pixelMetric(QStyle::PM_DefaultFrameWidth);
    case platform::kSmCxFrame:
      return style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    default:
      return 0;
  }
}

double QtWindowServices::TwipsPerPixelX() {
  return GuiReady() ? TwipsPerPixel(QGuiApplication::primaryScreen()->logicalDotsPerInchX()) : 0;
}

double QtWindowServices::TwipsPerPixelY() {
  return GuiReady() ? TwipsPerPixel(QGuiApplication::primaryScreen()->logicalDotsPerInchY()) : 0;
}

platform::WorkArea QtWindowServices::ScreenWorkArea() {
  if (!GuiReady()) return {};
  const QRect r = QGuiApplication::primaryScreen()->availableGeometry();
  return {static_cast<double>(r.x()), static_cast<double>(r.y()), static_cast<double>(r.width()),
          static_cast<double>(r.height())};
}

int QtWindowServices::MessageBox(const std::string& text, const std::string& caption, std::uint32_t flags) {
  if (!GuiReady()) return 0;
  return ShowClassicMessageBox(text, caption, flags);
}

std::unique_ptr<platform::TextMeasurer> QtWindowServices::NewTextMeasurer(const FontSpec& font) {
  if (!GuiReady()) return nullptr;
  QFont qfont = QApplication::font();
  if (!font.family.empty()) qfont.setFamily(Q(font.family));
  if (font.point_size > 0) qfont.setPointSizeF(font.point_size);
  qfont.setBold(font.bold);
  qfont.setItalic(font.italic);
  return std::make_unique<FontMeasurer>(qfont, TwipsPerPixelX());
}

platform::FileDialogResult QtWindowServices::FileDialog(const platform::FileDialogRequest& request) {
  if (!GuiReady()) return {};
  QFileDialog dialog(nullptr, Q(request.title));
  // Qt's own dialog: the same on every desktop, and it needs no portal.
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  const QStringList filters = NameFilters(request.filter);
  if (!filters.isEmpty()) dialog.setNameFilters(filters);
  if (!request.initial_path.empty()) {
    const QFileInfo start(Q(request.initial_path));
    if (start.isDir()) {
      dialog.setDirectory(start.absoluteFilePath());
    } else {
      dialog.setDirectory(start.absolutePath());
      dialog.selectFile(start.fileName());
    }
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    return {platform::DialogOutcome::kCancelled, {}};
  return {platform::DialogOutcome::kChosen, dialog.selectedFiles().first().toStdString()};
}

bool QtWindowServices::AboutBox(const platform::AboutInfo& about) {
  if (!GuiReady()) return false;
  QMessageBox box;
  box.setWindowTitle(QObject::tr("About %1").arg(Q(about.program_name)));
  box.setTextFormat(Qt::RichText);
  QString text = QStringLiteral("<b>%1</b>").arg(Q(about.program_name).toHtmlEscaped());
  if (!about.program_author.empty()) text += QStringLiteral("<br>") + Q(about.program_author).toHtmlEscaped();
  if (!about.program_company.empty()) text += QStringLiteral("<br>") + Q(about.program_company).toHtmlEscaped();
  box.setText(text);
  QPixmap icon;
  if (about.icon) {
    if (!about.icon->Bytes.empty())
      icon.loadFromData(reinterpret_cast<const uchar*>(about.icon->Bytes.data()),
                        static_cast<uint>(about.icon->Bytes.size()));
    else if (!about.icon->Path.empty())
      icon.load(Q(about.icon->Path));
  }
  if (icon.isNull()) icon = QApplication::windowIcon().pixmap(64, 64);
  if (icon.isNull())
    box.setIcon(QMessageBox::Information);
  else
    box.setIconPixmap(icon.scaled(64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  box.addButton(QMessageBox::Ok);
  box.exec();
  return true;
}

bool QtWindowServices::ViewFile(const std::string& path, const std::string& caption, std::string& error) {
  error.clear();
  if (!GuiReady()) return false;
  return ShowFileViewer(path, caption, error);
}

bool QtWindowServices::OpenUrl(const std::string& url) {
  if (!GuiReady()) return false;
  const QUrl target = QUrl::fromUserInput(Q(url));
  return target.isValid() && QDesktopServices::openUrl(target);
}

platform::Services QtServices() noexcept {
  platform::Services services = platform::LinuxServices();
  try {
    services.windows = std::make_shared<QtWindowServices>();
  } catch (...) {
    services.windows = nullptr;
  }
  return services;
}

}  // namespace tolva::qt
