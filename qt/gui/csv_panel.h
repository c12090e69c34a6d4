// Reads a slice of a CSV file into a list box laid out in columns.
#ifndef TOLVA_QT_GUI_CSV_PANEL_H_
#define TOLVA_QT_GUI_CSV_PANEL_H_

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QWidget>

#include "tolva/tolva2011register.h"

namespace tolva::gui {

class CsvPanel : public QWidget {
  Q_OBJECT

 public:
  // At most this many rows are read into the list.
  static constexpr Long kSliceRows = 500;

  CsvPanel(Tolva2011Register& component, QWidget* parent = nullptr);
  // Measures the file, reads its first rows and sets the tab stops; false
  // (with the reason shown) on failure. `path` may begin with "~/".
  bool Load(const QString& path);
  // The path as the field shows it: under the home folder as "~/...".
  QString shown_path() const { return path_->text(); }
  QListWidget* list() const { return list_; }
  Long columns() const { return columns_; }

 private:
  void Browse();

  Tolva2011Register& c_;
  QLineEdit* path_;
  QListWidget* list_;
  QLabel* status_;
  Long columns_ = 0;
};

}  // namespace tolva::gui

#endif  // TOLVA_QT_GUI_CSV_PANEL_H_
