#pragma once

#include <QString>

class QWidget;

/// What becomes of edits in the pages of a service that nobody has applied.
namespace vlclientui::viewer {

enum class EditsWish { Apply, Discard, Stay };

/// @param name of the service.
[[nodiscard]] EditsWish askAboutEdits(const QString& name, QWidget* parent);

/// Where applying them makes no sense. @returns whether they may go.
[[nodiscard]] bool askToLoseEdits(const QString& question, QWidget* parent);

}  // namespace vlclientui::viewer
