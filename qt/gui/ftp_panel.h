// An FTP session: open, list the remote directory, fetch a file in blocks
// with a progress bar and a Stop button.
#ifndef TOLVA_QT_GUI_FTP_PANEL_H_
#define TOLVA_QT_GUI_FTP_PANEL_H_

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

#include "gui_host.h"
#include "tolva/tolva2011register.h"

namespace tolva::gui {

class FtpPanel : public QWidget {
  Q_OBJECT

 public:
  FtpPanel(Tolva2011Register& component, GuiHost& host, QWidget* parent = nullptr);

 private:
  void Open();
  void List();
  void Get();

  Tolva2011Register& c_;
  QLineEdit *host_, *user_, *password_, *local_dir_;
  QListWidget* files_;
  QProgressBar* progress_;
  QPushButton* stop_;
  QLabel* status_;
};

}  // namespace tolva::gui

#endif  // TOLVA_QT_GUI_FTP_PANEL_H_
