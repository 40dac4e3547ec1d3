#pragma once

#include <string>
#include <vector>

#include "selection/XmlForTests.h"
#include "support/SelectionFixture.h"

namespace vlclientui::test {

inline const std::string settingsFile = "C:\\Documents\\Ostrel\\Vor Lane\\VLClientUI.VLConfig.Xml";

/// A settings file with a placeholder and these servers.
inline std::string settingsWith(const std::vector<std::string>& servers) {
  std::string xml = "<Vorlane><Client><ShowImageServicesDialog><MruServers><Placeholder/>";
  for (const std::string& server : servers) xml += "<ServerName>" + server + "</ServerName>";
  return xml + "</MruServers></ShowImageServicesDialog></Client></Vorlane>";
}

/// What the tests of the add-service window look at.
class SelectionTest : public SelectionFixture {
 protected:
  /// Names that the list shows, in order.
  [[nodiscard]] std::vector<std::string> shownNames() const {
    std::vector<std::string> names;
    const auto values = parsed(plexa->lastListValues());
    if (!values->documentElement()) return names;
    for (const auto& row : values->documentElement()->childNodes()) {
      names.push_back(row->getNamedItem("displayName").value_or("(no name)"));
    }
    return names;
  }

  /// Engine calls made since the mark.
  [[nodiscard]] std::vector<std::string> newCalls() const { return plexa->callsFrom(callMark_); }
  [[nodiscard]] std::vector<Pointer> newPointers() const {
    const auto& all = toolkit->pointers();
    return {all.begin() + static_cast<std::ptrdiff_t>(pointerMark_), all.end()};
  }
  void mark() {
    callMark_ = plexa->record->calls.size();
    pointerMark_ = toolkit->pointers().size();
  }

  static void enterServer(ImageServicesControl& control, const std::string& server) {
    control.uiTxtBoxServerName.userTypes(server);
    control.uiTxtBoxServerName.userPresses(keyCode::enter);
  }

  /// A window below the control's, named as the engine names its list.
  WindowHandle addListWindow(ImageServicesControl& control, const std::string& title = "CHS list") {
    return toolkit->addChildWindow(toolkit->windowOf(control), title);
  }

 private:
  std::size_t callMark_ = 0;
  std::size_t pointerMark_ = 0;
};

}  // namespace vlclientui::test
