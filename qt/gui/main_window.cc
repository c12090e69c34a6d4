#include "main_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QInputDialog>
#include <QPushButton>
#include <QTabWidget>

#include "ftp_panel.h"
#include "tolva/qt/form_adapters.h"
#include "tolva/qt/qt_window_services.h"

namespace tolva::gui {

namespace {
constexpr const char* kSection = "MainWindow";
}

MainWindow::MainWindow() : c_(qt::QtServices(), &host_, &host_) {
  c_.ProgramName("Tolva GUI");
  c_.ProgramAuthor("The Tolva developers");
  c_.ProgramCompany("Tolva");
  c_.RegistryApp("tolva-gui");
  setWindowTitle(QStringLiteral("Tolva GUI"));
  auto* tabs = new QTabWidget;
  csv_ = new CsvPanel(c_);
  tabs->addTab(csv_, tr("CSV viewer"));
  tabs->addTab(new FtpPanel(c_, host_), tr("FTP"));
  tabs->addTab(MessagesPanel(), tr("Messages and dialogs"));
  setCentralWidget(tabs);
}

QWidget* MainWindow::MessagesPanel() {
  auto* panel = new QWidget;
  auto* grid = new QGridLayout(panel);
  int slot = 0;
  auto add = [&](const QString& title, std::function<void()> action) {
    auto* b = new QPushButton(title);
    connect(b, &QPushButton::clicked, panel, action);
    grid->addWidget(b, slot / 3, slot % 3);
    ++slot;
  };
  add(tr("Error"), [this] { c_.MessageError("Something went wrong."); });
  add(tr("Information"), [this] { c_.MessageInfo("Here is something to know."); });
  add(tr("Warning"), [this] { c_.MessageWarn("Careful now."); });
  add(tr("Query (Yes/No)"), [this] {
    const Long pressed = c_.MessageQuery("Do you like it?", 4).AsLong();
    c_.MessageInfo(pressed == 6 ? "You pressed Yes." : "You pressed No.");
  });
  add(tr("About"), [this] {
    std::string error;
    c_.ShowTolvaAboutBox(error);
  });
  add(tr("View a file..."), [this] {
    std::string file, error;
    if (IsTrue(c_.DialogFileOpen2(file, error, "View a file")) && !IsTrue(c_.ViewBinary(file, error)))
      c_.MessageError(error);
  });
  add(tr("Save dialog..."), [this] {
    std::string file, error;
    if (IsTrue(c_.DialogFileSave2(file, error, "Save as"))) c_.MessageInfo("You chose " + file);
  });
  add(tr("Open a web page..."), [this] {
    const QString url = QInputDialog::getText(this, tr("Open a web page"), tr("Address"));
    std::string error;
    if (!url.isEmpty() && !IsTrue(c_.LoadURL(url.toStdString(), error))) c_.MessageError(error);
  });
  grid->setRowStretch(grid->rowCount(), 1);
  return panel;
}

void MainWindow::RestorePosition() {
  qt::QtForm form(this);
  c_.RegistryGetPosition(form, kSection);
  c_.AdjustFormPosition(form);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  qt::QtForm form(this);
  c_.RegistrySavePosition(form, kSection);
  event->accept();
}

}  // namespace tolva::gui
