// Every silent end in the metadata viewer reaches the observer.

#include "support/HeardSilence.h"
#include "support/MetadataFixture.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

class MetadataSilence : public MetadataFixture {
 protected:
  [[nodiscard]] std::function<void()> clicking(const std::string& key) {
    return [this, key] { clickNode(key); };
  }
};

TEST_F(MetadataSilence, OfACallThatFailsIsTold) {
  service->failAt = "ServiceInfo";
  openPage();
  expectHeard({{"fetchDocuments: the service fails at ServiceInfo", clicking("Service")}});
}

TEST_F(MetadataSilence, OfDocumentsIsTold) {
  serviceInfo = "no document";
  openPageWithoutService();
  expectHeard(
      {{"MetadataPages::ShowServiceInfoPage: a text of 11 bytes is no XML document", clicking("Service")}});
}

TEST_F(MetadataSilence, OfADefinitionThatCannotBeReadIsTold) {
  openPage();
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<open");
  expectHeard({{"definitionFile: 'C:\\Program\\VLClient.Xfdef' cannot be read as an XML document",
                clicking("Image")}});
}

TEST_F(MetadataSilence, OfAnEngineIsTold) {
  openPage();
  plexa->record->showAnswer = false;
  expectHeard({{"showDefinedPage: the form engine shows no page", clicking("Image")},
               {"TreeEngine::fill: the form engine shows no tree", clicking("ServerProcess")}});
}

TEST_F(MetadataSilence, OfRastersIsTold) {
  imageMetadata = imageXml(
      "", "<Detailed><Rasters><Raster><Info/></Raster><Raster><Info/></Raster></Rasters></Detailed>");
  openPageWithoutService();
  expectHeard({{"RasterPages::takeRasters: 2 rasters without a RasterId are left out", clicking("Raster")}});
}

TEST_F(MetadataSilence, OfALockWithoutAPlaceIsTold) {
  openPageWithoutService();
  clickNode("Raster");
  threadState().gServicePropertiesXml = "<Vorlane/>";
  expectHeard(
      {{"writeLock: the properties have no place for a lock", [this] { controls->Command7.click.raise(); }}});
}

TEST_F(MetadataSilence, IsNotTheLotOfAVisitThatGoesWell) {
  HeardSilence heard;
  openPage();
  for (const std::string& key : nodeKeys()) clickNode(key);
  EXPECT_THAT(heard.take(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
