#include "widgets/PageWindow.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/PageView.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr int usualWidth = 540;
constexpr int leastHeight = 240;
constexpr int marginWidth = 30;
constexpr int buttonHeight = 70;  ///< what stands below the page, with its margins

/// The page's height, unless the screen is too small for it.
int heightFor(const PageView& page, const QScreen& screen) {
  const int content = std::max(page.widget()->heightForWidth(usualWidth - marginWidth), 0);
  return std::clamp(content + buttonHeight, leastHeight, screen.availableGeometry().height() * 3 / 4);
}

}  // namespace

PageWindow::PageWindow(const std::string& caption, engine::WindowFrame frame, const engine::FormModel& page,
                       const PageListener& listener, QWidget* parent)
    : QDialog(parent), page_(new PageView(page, listener, this)) {
  setWindowTitle(toQt(caption));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  buttons->button(QDialogButtonBox::Close)->setDefault(true);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(page_);
  layout->addWidget(buttons);
  resize(usualWidth, heightFor(*page_, *screen()));
  if (frame == engine::WindowFrame::Modal) setFixedSize(size());
  if (page_->focusProxy()) {
    page_->setFocus();
  } else {
    buttons->button(QDialogButtonBox::Close)->setFocus();
  }
}

}  // namespace vlclientui::widgets
