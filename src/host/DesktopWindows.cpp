#include "host/DesktopWindows.h"

#include "contracts/RuntimeFailure.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::host {

WindowHandle windowHandleOf(const ComposedHost& host, QWidget& widget) {
  auto* const toolkit = dynamic_cast<widgets::QtToolkit*>(host.platform->toolkit.get());
  if (toolkit == nullptr) throw RuntimeFailure("The platform has no windows to put a page into");
  return toolkit->windows().handleOf(&widget);
}

}  // namespace vlclientui::host
