#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>
#include <functional>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// The least contrast of a text with what lies behind it (WCAG 2.1, level AA).
inline constexpr double leastContrast = 4.5;

/// From 1, no difference, to 21, black on white. Both colors count as opaque.
[[nodiscard]] double contrastOf(const QColor& one, const QColor& other);

/// The color of complaints: a red that can be read on that background.
[[nodiscard]] QColor complaintColor(const QColor& background);

/// The color of texts that step back behind others: between the palette's text and the background, as faint
/// as can still be read. @param background role of what lies behind the text.
[[nodiscard]] QColor faintColor(const QPalette& palette, QPalette::ColorRole background);

/// The same for the rows of a list, of either shade.
[[nodiscard]] QColor faintRowColor(const QPalette& palette);

/// Gives a widget colors of its own, chosen anew whenever the palette around it changes.
void colorBy(QWidget& widget, std::function<void(QPalette&)> choose);

/// A label that tells what is wrong.
void colorAsComplaint(QWidget& label);

/// A label whose text steps back behind others.
void colorFaintly(QWidget& label);

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
