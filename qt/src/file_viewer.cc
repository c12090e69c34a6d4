#include "file_viewer.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tolva::qt {

QString HexDump(const QByteArray& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  QString out;
  out.reserve(bytes.size() / 16 * 79 + 80);
  for (qsizetype line = 0; line < bytes.size(); line += 16) {
    out += QStringLiteral("%1  ").arg(static_cast<qulonglong>(line), 8, 16, QLatin1Char('0'));
    QString ascii;
    for (qsizetype i = line; i < line + 16; ++i) {
      if (i < bytes.size()) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        out += QLatin1Char(kDigits[b >> 4]);
        out += QLatin1Char(kDigits[b & 0xF]);
        out += QLatin1Char(' ');
        ascii += (b >= 0x20 && b < 0x7F) ? QLatin1Char(static_cast<char>(b)) : QLatin1Char('.');
      } else {
        out += QStringLiteral("   ");
      }
      if (i == line + 7) out += QLatin1Char(' ');
    }
    out += QStringLiteral(" |") + ascii + QStringLiteral("|\n");
  }
  return out;
}

QString PrintableText(const QByteArray& bytes) {
  QByteArray copy = bytes;
  for (char& ch : copy) {
    const auto b = static_cast<unsigned char>(ch);
    if (b < 0x20 && ch != '\n' && ch != '\r' && ch != '\t') ch = '.';
  }
  return QString::fromUtf8(copy);
}

bool ShowFileViewer(const std::string& path, const std::string& caption, std::string& error) {
  QFile file(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())));
  if (!file.open(QIODevice::ReadOnly)) {
    error = "can't be read.";
    return false;
  }
  const qint64 size = file.size();
  const QByteArray bytes = file.read(kViewLimit);
  file.close();

  QDialog dialog;
  dialog.setWindowTitle(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())));
  auto* layout = new QVBoxLayout(&dialog);
  auto* note = new QLabel(size > bytes.size() ? QObject::tr("First %1 of %2 bytes").arg(bytes.size()).arg(size)
                                              : QObject::tr("%1 bytes").arg(size));
  layout->addWidget(note);
  auto* tabs = new QTabWidget;
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  auto add_page = [&](const QString& text, const QString& title) {
    auto* view = new QPlainTextEdit;
    view->setReadOnly(true);
    view->setFont(fixed);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setPlainText(text);
    tabs->addTab(view, title);
  };
  add_page(PrintableText(bytes), QObject::tr("Text"));
  add_page(HexDump(bytes), QObject::tr("Hex"));
  layout->addWidget(tabs);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout->addWidget(buttons);
  dialog.resize(760, 520);
  dialog.exec();
  return true;
}

}  // namespace tolva::qt
