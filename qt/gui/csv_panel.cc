#include "csv_panel.h"

#include <QDir>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "tolva/qt/list_box_adapter.h"

namespace tolva::gui {

namespace {

// The path field shows a file under the home folder as "~/...": shorter, and
// a shared screen or a screenshot does not tell whose machine it is.
QString ShownPath(const QString& path) {
  const QString home = QDir::homePath();
  if (home.size() > 1 && path.startsWith(home + QLatin1Char('/'))) return QLatin1Char('~') + path.mid(home.size());
  return path;
}

// A "~/..." path, shown or typed, means the home folder, as in a shell.
QString FullPath(const QString& text) {
  if (text == QLatin1String("~") || text.startsWith(QLatin1String("~/"))) return QDir::homePath() + text.mid(1);
  return text;
}

}  // namespace

CsvPanel::CsvPanel(Tolva2011Register& component, QWidget* parent) : QWidget(parent), c_(component) {
  auto* layout = new QVBoxLayout(this);
  auto* row = new QHBoxLayout;
  path_ = new QLineEdit;
  path_->setPlaceholderText(tr("CSV file"));
  auto* browse = new QPushButton(tr("Browse..."));
  auto* load = new QPushButton(tr("Load"));
  row->addWidget(path_, 1);
  row->addWidget(browse);
  row->addWidget(load);
  layout->addLayout(row);
  list_ = new QListWidget;
  list_->setObjectName(QStringLiteral("csvList"));
  layout->addWidget(list_, 1);
  status_ = new QLabel;
  layout->addWidget(status_);
  connect(browse, &QPushButton::clicked, this, &CsvPanel::Browse);
  connect(load, &QPushButton::clicked, this, [this] { Load(path_->text()); });
  connect(path_, &QLineEdit::returnPressed, this, [this] { Load(path_->text()); });
}

void CsvPanel::Browse() {
  std::string file, error;
  if (IsTrue(c_.DialogFileOpen2(file, error, "Open a CSV file"))) {
    path_->setText(QString::fromStdString(file));
    Load(path_->text());
  } else if (!error.empty()) {
    c_.MessageError(error);
  }
}

bool CsvPanel::Load(const QString& path) {
  const QString full = FullPath(path);
  path_->setText(ShownPath(full));
  list_->clear();
  const std::string file = full.toStdString();
  std::string error;
  Long rows = 0, columns = 0;
  if (!IsTrue(c_.ReadFileToArrayGetSize(file, rows, columns, error))) {
    status_->setText(QString::fromStdString(error));
    return false;
  }
  const Long wanted = std::min(rows, kSliceRows);
  if (wanted < 1 || columns < 1) {
    status_->setText(tr("The file holds no rows."));
    return false;
  }
  auto cells = HostArray<std::string>::TwoDim(1, wanted, 1, columns);
  Long got_rows = 0, got_columns = 0, all_rows = 0, all_columns = 0;
  if (!IsTrue(c_.ReadFileToArray(file, cells, wanted, columns, got_rows, got_columns, all_rows, all_columns, error))) {
    status_->setText(QString::fromStdString(error));
    return false;
  }
  for (Long r = 1; r <= got_rows; ++r) {
    QString line;
    for (Long col = 1; col <= got_columns; ++col) {
      if (col > 1) line += QLatin1Char('\t');
      const std::string* cell = cells.At(r, col);
      if (cell) line += QString::fromStdString(*cell);
    }
    list_->addItem(line);
  }
  columns_ = got_columns;
  qt::QtListBox box(list_);
  auto widths = HostArray<Long>::OneDim(1, columns_);
  c_.ListBoxTabPositionsSet(box, columns_, widths);
  status_->setText(tr("%1 of %2 rows, %3 columns").arg(got_rows).arg(all_rows).arg(all_columns));
  return true;
}

}  // namespace tolva::gui
