// A modal read-only view of a file as text and as a hex dump.
#ifndef TOLVA_QT_SRC_FILE_VIEWER_H_
#define TOLVA_QT_SRC_FILE_VIEWER_H_

#include <QByteArray>
#include <QString>

#include <string>

namespace tolva::qt {

// At most this much of a file is shown; the title says when more exists.
inline constexpr qint64 kViewLimit = 4 * 1024 * 1024;

// "00000000  41 42 ...  |AB..|" lines, 16 bytes a line.
QString HexDump(const QByteArray& bytes);
// The bytes as text: line ends kept, other control bytes shown as ".".
QString PrintableText(const QByteArray& bytes);

bool ShowFileViewer(const std::string& path, const std::string& caption, std::string& error);

}  // namespace tolva::qt

#endif  // TOLVA_QT_SRC_FILE_VIEWER_H_
