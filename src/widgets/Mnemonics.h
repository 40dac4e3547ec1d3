#pragma once

#include <QString>
#include <QWidget>
#include <string>

namespace vlclientui::widgets {

/// Name of the property that names the letter by which Alt leads to a widget, in a caption that marks none
/// itself.
inline constexpr const char* mnemonicProperty = "mnemonic";

/// The caption with "&" before the first such letter, of whatever case. Unchanged where it marks one itself,
/// and where the widget names none.
[[nodiscard]] QString withMnemonic(const QWidget& widget, const std::string& caption);

}  // namespace vlclientui::widgets
