#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/MetadataFixture.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {

// Tabs and frames of the window.
inline constexpr std::size_t propertiesSide = 0;
inline constexpr std::size_t metadataSide = 1;

inline constexpr const char* helpBlock = "<X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF>";

[[nodiscard]] inline std::string nameXml(const std::string& name) {
  return "<Vorlane><ImageServiceInfo>" + name + "</ImageServiceInfo></Vorlane>";
}

/// The window of an initialized dialog object, with a fake service that has two rasters.
class OneWindowDialog : public PropertiesFixture {
 protected:
  OneWindowDialog() {
    service->properties =
        propertiesXml("<MosaicMethod>By Attribute</MosaicMethod><LockImageID>7</LockImageID>");
    service->info = nameXml("<Name>Alps</Name>");
    service->metadata = imageOf({{.id = "12.5"}, {.id = "2", .name = "south", .visible = "False"}});
    service->serviceMetadata = "<Metadata><Author>survey</Author></Metadata>";
    service->definitions[3] = "<XADef><Metadata/></XADef>";
    service->definitions[4] = "<XFDef><Metadata/></XFDef>";
    toolkit->rects["ServicePropertiesDialogForm"] = {0, 0, 700, 500};
    threadState().gViewPointX = "11";
    threadState().gViewPointY = "22";
    initialize();
    service->calls.clear();
  }

  using Script = std::function<void()>;
  /// Shows the window; the script acts as a person would. @returns what the host gets.
  std::int32_t show(const Script& script = [] {}) {
    toolkit->scriptModal([&script](Form&) { script(); });
    return older()->ShowPropertiesModalDialog();
  }
  /// Goes on with another dialog object, which has no service.
  void beginWithoutService() {
    dialog = std::make_shared<ServicePropertiesDialog>();
    initializeWithoutService();
  }

  [[nodiscard]] ServicePropertiesDialogForm& form() const { return *dialog->window(); }
  [[nodiscard]] ServicePropertiesDialogForm::Controls& controls() const { return form().controls(); }
  [[nodiscard]] static std::string& published() { return threadState().gServicePropertiesXml; }
  [[nodiscard]] bool sideIsShown(std::size_t side) const {
    return controls().ServicePropFrame.at(side).visible();
  }
  void pickTab(std::size_t tab) const { controls().myTab.userSelects(tab); }
  void clickOk() const { controls().uibtnok.userClicks(); }
  void clickCancel() const { controls().uibtncancel.userClicks(); }
  /// The metadata side with the rasters, as before a lock.
  void showRasters() const {
    pickTab(metadataSide);
    controls().metadata.uiTreeView.userSelects("Raster");
  }
  void lock() const {
    showRasters();
    controls().metadata.Command7.click.raise();
  }
  /// The engine holds what a person made of the properties.
  void edit(const std::string& children) const { plexa->record->resultXml = propertiesXml(children); }
  void notify(const std::string& control, const std::string& value) const {
    const auto engine = form().plexaUtil;
    ASSERT_TRUE(engine);
    engine->Notify.raise(*engine, {"Change", control, value, "", 0});
  }
  [[nodiscard]] std::vector<std::string> engineCallsDuring(const Script& action) const {
    const std::size_t before = plexa->record->calls.size();
    action();
    return plexa->callsFrom(before);
  }
};

}  // namespace vlclientui::test
