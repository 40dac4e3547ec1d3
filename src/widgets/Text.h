#pragma once

#include <QString>
#include <string>

namespace vlclientui::widgets {

/// The logic's texts are UTF-8.
[[nodiscard]] inline QString toQt(const std::string& text) { return QString::fromStdString(text); }
[[nodiscard]] inline std::string fromQt(const QString& text) { return text.toStdString(); }

}  // namespace vlclientui::widgets
