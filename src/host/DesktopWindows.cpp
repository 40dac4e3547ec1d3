#include "host/DesktopWindows.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "widgets/HelpKey.h"
#include "widgets/Mnemonics.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::host {

WindowHandle windowHandleOf(const ComposedHost& host, QWidget& widget) {
  auto* const toolkit = dynamic_cast<widgets::QtToolkit*>(host.platform->toolkit.get());
  if (toolkit == nullptr) throw RuntimeFailure("The platform has no windows to put a page into");
  return toolkit->windows().handleOf(&widget);
}

NewsListener::NewsListener(const ComposedHost& host, std::function<void(const QString& news)> hear)
    : toolkit_(host.platform->toolkit) {
  auto* const toolkit = dynamic_cast<widgets::QtToolkit*>(toolkit_.get());
  if (toolkit != nullptr) connection_ = toolkit->told.connect(std::move(hear));
}

NewsListener::~NewsListener() {
  auto* const toolkit = dynamic_cast<widgets::QtToolkit*>(toolkit_.get());
  if (toolkit != nullptr) toolkit->told.disconnect(connection_);
}

void openHelpByKey(QWidget& window, const std::string& page) { widgets::openHelpByKey(window, page); }

void settleMnemonics(QWidget& page) { widgets::settleMnemonics(page); }

}  // namespace vlclientui::host
