#include "tolva/qt/name_filters.h"

#include <QRegularExpression>

namespace tolva::qt {

QStringList NameFilters(const std::string& filter) {
  QStringList out;
  const QStringList parts = QString::fromUtf8(filter.data(), static_cast<qsizetype>(filter.size())).split('|');
  static const QRegularExpression trailing_patterns(QStringLiteral("\\s*\\([^()]*\\)\\s*$"));
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    QString description = parts[i].trimmed();
    description.remove(trailing_patterns);
    QStringList patterns;
    if (i + 1 < parts.size()) {
      for (const QString& p : parts[i + 1].split(';', Qt::SkipEmptyParts)) {
        const QString pattern = p.trimmed();
        if (pattern.isEmpty()) continue;
        patterns << (pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
      }
    }
    if (description.isEmpty() && patterns.isEmpty()) continue;
    if (patterns.isEmpty()) patterns << QStringLiteral("*");
    if (description.isEmpty()) description = patterns.join(' ');
    out << description + QStringLiteral(" (") + patterns.join(' ') + QStringLiteral(")");
  }
  return out;
}

}  // namespace tolva::qt
