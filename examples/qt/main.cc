// A minimal Qt host: a window with a button that lists an FTP directory.
//   tolva-qt-example HOST[:PORT] DIRECTORY [--click-once]
// The login is anonymous. --click-once presses the button as soon as the
// window's event loop runs, prints the listing and quits.
#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <cstdio>
#include <string>

#include "tolva/qt/display_check.h"
#include "tolva/qt/qt_window_services.h"
#include "tolva/tolva2011register.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: %s HOST[:PORT] DIRECTORY [--click-once]\n", argv[0]);
    return 2;
  }
  if (!tolva::qt::CanStartGui()) {
    std::fprintf(stderr, "no display (set DISPLAY, or QT_QPA_PLATFORM=offscreen)\n");
    return 2;
  }
  QApplication app(argc, argv);
  const std::string host = argv[1], directory = argv[2];
  const bool click_once = argc > 3 && std::string(argv[3]) == "--click-once";

  tolva::Tolva2011Register component(tolva::qt::QtServices());
  component.InitProperties();

  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  auto* button = new QPushButton(QStringLiteral("List %1").arg(QString::fromStdString(directory)));
  auto* list = new QListWidget;
  layout->addWidget(button);
  layout->addWidget(list);

  int status = 0;
  QObject::connect(button, &QPushButton::clicked, &window, [&] {
    list->clear();
    std::string error;
    if (!tolva::IsTrue(component.FTPSessionOpen(host, "anonymous", "example@", error)) ||
        !tolva::IsTrue(component.FTPSessionDirectoryCurrentSet(directory))) {
      if (error.empty()) error = component.FTPLastError();
      list->addItem(QString::fromStdString(error));
      status = 1;
    } else {
      constexpr tolva::Long kMax = 1000;
      auto names = tolva::HostArray<std::string>::OneDim(1, kMax);
      const tolva::Long found = component.FTPSessionFileFindFiles("*", names, kMax, error);
      for (tolva::Long i = 1; i <= found && i <= kMax; ++i) list->addItem(QString::fromStdString(*names.At(i)));
      if (!error.empty()) {
        list->addItem(QString::fromStdString(error));
        status = 1;
      }
    }
    component.FTPSessionClose();
    if (click_once) {
      for (int row = 0; row < list->count(); ++row) std::printf("%s\n", qPrintable(list->item(row)->text()));
      app.exit(status);
    }
  });

  window.setWindowTitle(QStringLiteral("Tolva FTP listing"));
  window.resize(360, 420);
  window.show();
  // Queued: the click runs once the event loop has started, not on a timer.
  if (click_once) QMetaObject::invokeMethod(button, &QPushButton::click, Qt::QueuedConnection);
  return app.exec();
}
