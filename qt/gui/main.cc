// tolva-gui: a desktop host of the component on Qt.
//   tolva-gui [--csv FILE] [--screenshot PNG] [--report TXT] [--quit]
// --screenshot saves the window after the CSV file is loaded; --report
// writes where the list's columns should start, for the screenshot check;
// --quit closes the window afterwards (through its normal close, so the
// position is saved).
#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

#include "main_window.h"
#include "tolva/qt/display_check.h"
#include "tolva/qt/list_box_adapter.h"

namespace {

// The path the window shows, the list's text origin inside the window
// picture, the font's average character and the stops in dialog units.
bool WriteReport(tolva::gui::MainWindow& window, const QString& path) {
  QListWidget* list = window.csv()->list();
  auto* delegate = qobject_cast<tolva::qt::TabStopDelegate*>(list->itemDelegate());
  if (!delegate || list->count() == 0) return false;
  const QRect first = list->visualItemRect(list->item(0));
  const QRect last = list->visualItemRect(list->item(list->count() - 1));
  const QPoint origin = list->viewport()->mapTo(&window, first.topLeft());
  const int margin = list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, list) + 1;
  const int bottom =
      list->viewport()->mapTo(&window, QPoint(0, std::min(last.bottom(), list->viewport()->height() - 1))).y();
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return false;
  QTextStream out(&file);
  out << "path " << window.csv()->shown_path() << "\n";
  out << "text_left " << origin.x() + margin << "\n";
  out << "rows " << origin.y() << " " << bottom << "\n";
  out << "average " << QString::number(tolva::qt::TabStopDelegate::AverageCharWidth(list->font()), 'g', 17) << "\n";
  out << "stops";
  for (tolva::Long s : delegate->tab_stops()) out << " " << s;
  out << "\n";
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (!tolva::qt::CanStartGui()) {
    std::fprintf(stderr, "tolva-gui: no display (set DISPLAY, or QT_QPA_PLATFORM=offscreen)\n");
    return 2;
  }
  QApplication app(argc, argv);
  QString csv, screenshot, report;
  bool quit = false;
  const QStringList args = app.arguments();
  for (qsizetype i = 1; i < args.size(); ++i) {
    if (args[i] == QLatin1String("--csv") && i + 1 < args.size())
      csv = args[++i];
    else if (args[i] == QLatin1String("--screenshot") && i + 1 < args.size())
      screenshot = args[++i];
    else if (args[i] == QLatin1String("--report") && i + 1 < args.size())
      report = args[++i];
    else if (args[i] == QLatin1String("--quit"))
      quit = true;
  }
  tolva::gui::MainWindow window;
  window.resize(900, 560);
  window.RestorePosition();
  window.show();
  int status = 0;
  if (!csv.isEmpty() && !window.csv()->Load(csv)) status = 1;
  // Let the window be laid out and painted before it is photographed.
  QTimer::singleShot(300, &window, [&] {
    if (!screenshot.isEmpty() && !window.grab().save(screenshot, "PNG")) status = 1;
    if (!report.isEmpty() && !WriteReport(window, report)) status = 1;
    if (quit) window.close();
  });
  const int rc = app.exec();
  return status ? status : rc;
}
