#include "widgets/FileFilters.h"

#include <QRegularExpression>

#include "widgets/QtVersions.h"

namespace vlclientui::widgets {

namespace {

QString labelOnly(const QString& label) {
  const QString trimmed = label.trimmed();
  const auto bracket = trimmed.lastIndexOf(QLatin1Char('('));
  if (bracket < 0 || !trimmed.endsWith(QLatin1Char(')'))) return trimmed;
  return trimmed.left(bracket).trimmed();
}

QString patternsOf(const QString& patterns) {
  QStringList result;
  for (const QString& pattern : patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    const QString trimmed = pattern.trimmed();
    result << (trimmed == QLatin1String("*.*") ? QStringLiteral("*") : trimmed);
  }
  return result.join(QLatin1Char(' '));
}

}  // namespace

QStringList nameFiltersOf(const QString& filter) {
  const QStringList parts = filter.split(QLatin1Char('|'));
  QStringList filters;
  for (QtSize label = 0; label + 1 < parts.size(); label += 2) {
    filters << QStringLiteral("%1 (%2)").arg(labelOnly(parts[label]), patternsOf(parts[label + 1]));
  }
  return filters;
}

QString suffixOf(const QString& nameFilter) {
  static const QRegularExpression firstPattern(QStringLiteral("\\(\\*\\.([^\\s*?)]+)[^()]*\\)$"));
  return firstPattern.match(nameFilter).captured(1);
}

}  // namespace vlclientui::widgets
