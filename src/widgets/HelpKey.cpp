#include "widgets/HelpKey.h"

#include <QKeyEvent>
#include <QVariant>
#include <utility>

#include "frame/General.h"
#include "frame/Guard.h"
#include "widgets/KeyCodes.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

class HelpKey : public QObject {
 public:
  HelpKey(QWidget& window, std::string page) : QObject(&window), window_(window), page_(std::move(page)) {
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &window_ || event->type() != QEvent::KeyPress) return false;
    const auto key = keyEventOf(*static_cast<QKeyEvent*>(event));
    if (!key || key->keyCode != keyCode::f1 || key->shift != keyModifier::control) return false;
    endsQuietly([&] { LaunchHelp(key->keyCode, key->shift, true, page_); });
    event->accept();
    return true;
  }

 private:
  QWidget& window_;
  std::string page_;
};

}  // namespace

void openHelpByKey(QWidget& window, const std::string& page) {
  window.setProperty(helpPageProperty, toQt(page));
  new HelpKey(window, page);
}

std::string helpPageAround(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    const QVariant page = widget->property(helpPageProperty);
    if (page.isValid()) return fromQt(page.toString());
  }
  return {};
}

}  // namespace vlclientui::widgets
