#pragma once

#include <QString>

class QWidget;

namespace vlclientui::viewer {

/// A widget below its title. @param buddy gets the focus by the letter of the title.
[[nodiscard]] QWidget* titledPane(const QString& title, QWidget& content, QWidget& buddy);

}  // namespace vlclientui::viewer
