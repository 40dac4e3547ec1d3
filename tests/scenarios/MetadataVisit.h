#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "scenarios/MetadataPerson.h"
#include "scenarios/ServiceScenarios.h"
#include "support/MetadataFixture.h"

namespace vlclientui::test {

/// Where a person reads the metadata of a service.
enum class MetadataPlace { Page, OneWindow };

/// A person at the metadata of a service that has two rasters.
class MetadataVisit : public ServiceScenarios {
 protected:
  MetadataVisit() {
    equip(person);
    showRasters({{.id = "12.5"}, {.id = "2", .name = "south", .visible = "False"}});
  }

  /// The service returns an image that was made of these. @param available as the document tells it.
  void showRasters(const std::vector<RasterText>& rasters, const std::string& available = "True") const {
    std::string detailed = "<Detailed><Rasters>";
    for (const RasterText& raster : rasters) detailed += rasterXml(raster);
    detailed +=
        "</Rasters><ProcessMetadata><Resampling>cubic</Resampling><Sources><Source>north</Source>"
        "</Sources></ProcessMetadata><ProcessMetadataAvailable>" +
        available + "</ProcessMetadataAvailable></Detailed>";
    service->metadata = imageDocument({.detailed = detailed});
  }

  /// The host has no service, but the documents of the one above.
  void beginWithDocuments() const {
    const auto newer = queryInterface<IOVLServicePropertiesDialog>(dialog);
    ASSERT_EQ(newer->Init("", nullptr, nullptr), boolean16True) << threadState().gStatus;
    newer->serviceInfoXml(service->info);
    newer->MetaDataXml(service->serviceMetadata);
    newer->ImageMetaDataXml(service->metadata);
  }
  /// The host shows the page in its window, and takes it away when the visit is over.
  void visitPage(const std::function<void()>& visit) {
    ASSERT_EQ(older()->ShowPropertyPage(page, person->hostWindow()), boolean16True) << threadState().gStatus;
    person->lookAt(dialog->metadataPage());
    visit();
    EXPECT_EQ(older()->Close(page), boolean16True);
  }
  /// The host shows the one-window dialog. @returns what it gets for it.
  std::int32_t visitWindow(const std::function<void()>& visit) {
    bool ran = false;
    person->whenWindowAppears([&] {
      visit();
      ran = true;
    });
    const std::int32_t result = older()->ShowPropertiesModalDialog();
    EXPECT_TRUE(ran);
    EXPECT_FALSE(person->windowIsOpen());
    return result;
  }
  /// What the service was asked since the last call of this.
  [[nodiscard]] std::vector<std::string> newCalls() const { return std::exchange(service->calls, {}); }
  [[nodiscard]] std::string shown(const std::string& field) const {
    return ServiceScenarios::shown(*person, field);
  }

  static constexpr auto page = PropertyPageId::PropertyPageMetadata;
  std::shared_ptr<MetadataPerson> person = makeMetadataPerson();
};

}  // namespace vlclientui::test
