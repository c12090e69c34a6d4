#include "ftp_panel.h"

#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "tolva/qt/list_box_adapter.h"

namespace tolva::gui {

namespace {
constexpr Long kMaxListed = 2000;
}

FtpPanel::FtpPanel(Tolva2011Register& component, GuiHost& host, QWidget* parent) : QWidget(parent), c_(component) {
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  host_ = new QLineEdit(QStringLiteral("127.0.0.1:2121"));
  user_ = new QLineEdit;
  password_ = new QLineEdit;
  password_->setEchoMode(QLineEdit::Password);
  local_dir_ = new QLineEdit(QDir::tempPath());
  form->addRow(tr("Host"), host_);
  form->addRow(tr("User"), user_);
  form->addRow(tr("Password"), password_);
  form->addRow(tr("Save into"), local_dir_);
  layout->addLayout(form);
  auto* buttons = new QHBoxLayout;
  auto* open = new QPushButton(tr("Open"));
  auto* close = new QPushButton(tr("Close"));
  auto* list = new QPushButton(tr("List"));
  auto* get = new QPushButton(tr("Get"));
  stop_ = new QPushButton(tr("Stop"));
  stop_->setEnabled(false);
  for (QPushButton* b : {open, close, list, get, stop_}) buttons->addWidget(b);
  layout->addLayout(buttons);
  files_ = new QListWidget;
  layout->addWidget(files_, 1);
  progress_ = new QProgressBar;
  layout->addWidget(progress_);
  status_ = new QLabel;
  status_->setWordWrap(true);
  layout->addWidget(status_);

  connect(open, &QPushButton::clicked, this, &FtpPanel::Open);
  connect(close, &QPushButton::clicked, this, [this] {
    c_.FTPSessionClose();
    files_->clear();
    status_->setText(tr("Closed."));
  });
  connect(list, &QPushButton::clicked, this, &FtpPanel::List);
  connect(get, &QPushButton::clicked, this, &FtpPanel::Get);
  // Stop only sets the component's flag; the running get sees it after its
  // next block, while the host processes events.
  connect(stop_, &QPushButton::clicked, this, [this] { c_.FTPSessionStop(); });
  host.on_progress = [this](const std::string&, Long done, Long total) {
    progress_->setMaximum(total > 0 ? total : 0);
    progress_->setValue(total > 0 ? done : 0);
  };
}

void FtpPanel::Open() {
  std::string error;
  if (IsTrue(c_.FTPSessionOpen(host_->text().toStdString(), user_->text().toStdString(),
                               password_->text().toStdString(), error))) {
    status_->setText(tr("Connected."));
    List();
  } else {
    status_->setText(QString::fromStdString(error));
  }
}

void FtpPanel::List() {
  files_->clear();
  auto names = HostArray<std::string>::OneDim(1, kMaxListed);
  auto sizes = HostArray<Long>::OneDim(1, kMaxListed);
  auto dates = HostArray<std::string>::OneDim(1, kMaxListed);
  auto times = HostArray<std::string>::OneDim(1, kMaxListed);
  std::string error;
  const Long found = c_.FTPSessionFileFindFilesFull("*", names, sizes, dates, times, kMaxListed, error);
  if (!error.empty()) status_->setText(QString::fromStdString(error));
  for (Long i = 1; i <= found && i <= kMaxListed; ++i) {
    files_->addItem(QStringLiteral("%1\t%2\t%3 %4")
                        .arg(QString::fromStdString(*names.At(i)))
                        .arg(*sizes.At(i))
                        .arg(QString::fromStdString(*dates.At(i)), QString::fromStdString(*times.At(i))));
  }
  qt::QtListBox box(files_);
  auto widths = HostArray<Long>::OneDim(1, 3);
  c_.ListBoxTabPositionsSet(box, 3, widths);
}

void FtpPanel::Get() {
  QListWidgetItem* item = files_->currentItem();
  if (!item) {
    c_.MessageInfo("Choose a file to get first.");
    return;
  }
  const QString name = item->text().section(QLatin1Char('\t'), 0, 0);
  const std::string local = (local_dir_->text() + QLatin1Char('/') + name).toStdString();
  std::string error;
  stop_->setEnabled(true);
  const Boolean ok = c_.FTPSessionGetBuffered(name.toStdString(), local, kFalse, error);
  stop_->setEnabled(false);
  if (IsTrue(c_.FTPSessionStopped()))
    status_->setText(tr("Stopped."));
  else
    status_->setText(IsTrue(ok) ? tr("Saved as %1").arg(QString::fromStdString(local)) : QString::fromStdString(error));
}

}  // namespace tolva::gui
