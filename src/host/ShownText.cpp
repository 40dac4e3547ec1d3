#include "host/ShownText.h"

#include "widgets/PathTexts.h"

namespace vlclientui::host {

std::string shownText(const ComposedHost& host, const std::string& text) {
  return widgets::pathTextsOf(host.platform->system).shown(text);
}

}  // namespace vlclientui::host
