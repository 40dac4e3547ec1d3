#pragma once

#include <QComboBox>
#include <QString>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// The text of the label that leads to a widget, without its mark of a letter and its colon; empty where no
/// label leads there.
[[nodiscard]] QString labelTextOf(const QWidget& widget);

/// Lets screen readers call a box by its label, else by its accessible name. The text that it shows is its
/// value, not its name; the toolkit's own way names it by that text. Boxes of the host stay as they are.
void nameByLabel(QComboBox& box);

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
