#pragma once

#include <QDialog>

#include "engine/Surface.h"
#include "widgets/PathTexts.h"

namespace vlclientui::widgets {

/// A page in a window of its own, closed by its button, by Escape or by its frame.
class PageWindow : public QDialog {
 public:
  PageWindow(const std::string& caption, engine::WindowFrame frame, const engine::FormModel& page,
             const PathTexts& paths, QWidget* parent);
};

}  // namespace vlclientui::widgets
