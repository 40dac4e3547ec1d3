#pragma once

#include <QString>
#include <QStringList>

namespace vlclientui::widgets {

/// The filter of a file dialog, "Label|*.ext|Label|*.ext", as name filters "Label (*.ext)". Blanks around
/// labels and patterns are dropped, and so are patterns that a label repeats in brackets at its end;
/// "*.*" means every file. Nothing for an empty filter; a label without a pattern is left out.
[[nodiscard]] QStringList nameFiltersOf(const QString& filter);

/// The suffix of the first pattern of a name filter, without its point; empty where any file has it.
[[nodiscard]] QString suffixOf(const QString& nameFilter);

}  // namespace vlclientui::widgets
