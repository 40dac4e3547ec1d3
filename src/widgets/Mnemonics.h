#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// Name of the property with the letter that leads to a widget by Alt, for captions without a mark of their
/// own.
inline constexpr const char* mnemonicProperty = "mnemonic";

/// Name of the property of a widget whose letter is taken in its window also while it is hidden, because it
/// cannot do with another one.
inline constexpr const char* keepsLetterProperty = "keepsLetter";

/// The caption with "&" before the first such letter, in any case. Unchanged when it has a mark already, and
/// when the widget names no letter.
[[nodiscard]] QString withMnemonic(const QWidget& widget, const std::string& caption);

/// A caption that may mark a letter: of a button, a group, a tab, a menu, or of a label that leads somewhere.
struct MarkedCaption {
  QWidget* widget;
  QString text;
  std::function<void(const QString& text)> write;
};

/// The captions of all widgets below a root, itself excepted, that show once the root does or keep their
/// letter.
[[nodiscard]] std::vector<MarkedCaption> captionsIn(QWidget& root);

/// The letter that a caption marks, in upper case; null for none.
[[nodiscard]] QChar letterOf(const QString& caption);

/// Gives a letter to one widget of a window only: where a caption below `page` marks a letter that the window
/// around the page, or a caption before it, has already, it marks another one of its letters, or none.
void settleMnemonics(QWidget& page);

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
