// tolva-gui's window: a CSV viewer, an FTP panel and the component's
// message boxes and dialogs; it remembers its place through the settings
// store.
#ifndef TOLVA_QT_GUI_MAIN_WINDOW_H_
#define TOLVA_QT_GUI_MAIN_WINDOW_H_

#include <QMainWindow>

#include "csv_panel.h"
#include "gui_host.h"
#include "tolva/tolva2011register.h"

namespace tolva::gui {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();
  CsvPanel* csv() const { return csv_; }
  // Places the window where it stood last time (sized by the ratio on the
  // first run).
  void RestorePosition();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* MessagesPanel();

  GuiHost host_;
  Tolva2011Register c_;
  CsvPanel* csv_;
};

}  // namespace tolva::gui

#endif  // TOLVA_QT_GUI_MAIN_WINDOW_H_
