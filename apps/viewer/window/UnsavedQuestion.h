#pragma once

#include <QString>

class QWidget;

/// What becomes of a map that no project holds as it is.
namespace vlclientui::viewer {

enum class UnsavedWish { Save, Discard, Stay };

/// @param name of the project; empty for one that has none yet.
[[nodiscard]] UnsavedWish askAboutUnsaved(const QString& name, QWidget* parent);

/// For a map that is lost at the end, since the last session cannot be kept. @param reason for a person.
[[nodiscard]] UnsavedWish askAboutUnkept(const QString& reason, QWidget* parent);

}  // namespace vlclientui::viewer
