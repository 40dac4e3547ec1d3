#pragma once

#include <QWidget>
#include <string>

namespace vlclientui::widgets {

/// Name of the property of a layout that names the help page of its window.
inline constexpr const char* helpPageProperty = "helpPage";

/// Opens a help page on Ctrl+F1, where nothing inside the window has taken the key.
/// @param page file name without its ending.
void openHelpByKey(QWidget& window, const std::string& page);

/// The page of the window that a widget stands in; empty for none.
[[nodiscard]] std::string helpPageAround(const QWidget* widget);

}  // namespace vlclientui::widgets
