#pragma once

#include <QPalette>

class QMenu;
class QSettings;

/// Colors of the windows.
namespace vlclientui::viewer {

enum class Appearance { Desktop, Light, Dark, HighContrast };

/// Its colors; those of the desktop for `Desktop`.
[[nodiscard]] QPalette paletteOf(Appearance appearance);

/// Gives all windows of the program its colors, and a style that follows them; `Desktop` gives back both.
void useAppearance(Appearance appearance);

/// A menu "Appearance" at the end of another one. What a person chooses is used at once and kept; what was
/// kept is used now. At first that is the desktop's.
/// @param settings outlives the menu.
void addAppearanceMenu(QMenu& menu, QSettings& settings);

}  // namespace vlclientui::viewer
