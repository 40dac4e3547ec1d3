#pragma once

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/Engine.h"
#include "headless/HeadlessSurface.h"
#include "platform/LibXmlService.h"
#include "support/TestFolders.h"

namespace vlclientui::engine {

inline std::shared_ptr<const XmlService> testXml() {
  static const auto service = std::make_shared<platform::LibXmlService>(platform::PathTranslation::ofUser());
  return service;
}

/// A document of the sample page.
inline std::string sampleDocument(const std::string& name) {
  std::ifstream file(testDataFolder() + "/engine/" + name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// The text with another part in the place of the first of this kind, which has to be there.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

inline constexpr WindowHandle hostWindow = 71;

inline const std::string listFields =
    "<list_fields><Name width='15'/><Geographic_Region width='8'/><Bands width='5'/></list_fields>";

/// A list document of one row each; a name that ends in "/" is a folder.
inline std::string listValues(const std::vector<std::string>& names) {
  std::string text = "<list_values>";
  for (auto name : names) {
    const bool folder = name.ends_with('/');
    if (folder) name.pop_back();
    text += "<Row icon=\"" + std::string(folder ? "fldr" : "VLSERVICE") + "\" displayName=\"" + name + "\"/>";
  }
  return text + "</list_values>";
}

inline const std::string emptyPage = "<root><xfd_header/></root>";

/// Engines whose surfaces are in memory.
class EngineTest : public ::testing::Test {
 protected:
  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces =
      std::make_shared<headless::HeadlessSurfaceFactory>();
  EngineFactory factory{testXml(), surfaces};
  std::shared_ptr<Plexa> engine = factory.createPlexa();
  std::vector<PlexaEvent> events;

  void record() {
    engine->Notify.connect([this](Plexa&, const PlexaEvent& event) { events.push_back(event); });
  }

  /// Shows a list as its holders do.
  void showList(const std::vector<std::string>& names) {
    ASSERT_TRUE(engine->SetOption("List_Fields", listFields));
    ASSERT_TRUE(engine->SetOption("List_Values", listValues(names)));
    engine->ParentWindow(hostWindow);
    engine->DataXml(emptyPage);
    engine->Height(200);
    engine->Width(405);
    engine->Top(30);
    ASSERT_TRUE(engine->SetOption("ShowVScrollBar", "False"));
    ASSERT_TRUE(engine->Show());
  }

  /// From now on a double click or Backspace brings these rows; events are counted anew.
  void answerWith(std::vector<std::string> names) {
    engine->Notify.disconnectAll();
    events.clear();
    record();
    engine->Notify.connect([this, names = std::move(names)](Plexa& raiser, const PlexaEvent& event) {
      if (event.EventName == "DblClick") raiser.SetOption("List_Values", listValues(names));
    });
  }

  headless::HeadlessSurface& surface() {
    auto* found = surfaces->surfaceIn(hostWindow);
    if (!found) throw std::runtime_error("no surface in the host's window");
    return *found;
  }
};

}  // namespace vlclientui::engine
