#pragma once

#include <QDialog>

#include "engine/Surface.h"
#include "widgets/FieldView.h"

namespace vlclientui::widgets {

class PageView;

/// A page in a window of its own, closed by its button, by Escape or by its frame.
class PageWindow : public QDialog {
 public:
  PageWindow(const std::string& caption, engine::WindowFrame frame, const engine::FormModel& page,
             const PageListener& listener, QWidget* parent);

  [[nodiscard]] PageView& page() const { return *page_; }

 private:
  PageView* page_;
};

}  // namespace vlclientui::widgets
