#include "scenarios/SweepWorld.h"

#include "support/MetadataFixture.h"
#include "support/SelectionFixture.h"

namespace vlclientui::test {

namespace {

constexpr const char* rasterGroup =
    "</Rasters><ProcessMetadata><Step>warp</Step></ProcessMetadata>"
    "<ProcessMetadataAvailable>True</ProcessMetadataAvailable></Detailed>";

}  // namespace

SweepWorld::SweepWorld() {
  service->metadata = imageDocument(
      {.detailed = "<Detailed><Rasters>" + rasterXml({.id = "1"}) + rasterXml({.id = "2"}) + rasterGroup});
  service->onCall = [this](const std::string&) { strike.call(); };
  const auto server = std::make_shared<FakeServer>();
  server->answer = serverInfoOf({"Roads/West", "Roads/East", "Relief"});
  server->duringCall = [this] { strike.call(); };
  client = std::make_shared<FakeServerClient>(server);
}

SweepWorld::~SweepWorld() { setPlatform(nullptr); }

void SweepWorld::begin() {
  threadState() = {};
  Platform made = platformWithoutWindows();
  stage = makeSweepStage();
  stage->equip(made);
  toolkit = std::make_shared<StrikingToolkit>(
      made.toolkit, strike,
      [this](Form& form, const std::function<void()>& script) { stage->runModal(form, script); });
  toolkit->file = "C:\\sweep.xml";
  engines = std::make_shared<StrikingPlexaFactory>(made.plexa, strike);
  made.toolkit = toolkit;
  made.plexa = engines;
  setPlatform(std::make_shared<Platform>(made));
}

void SweepWorld::end() {
  strike.disarm();
  stage->settle();
  setPlatform(nullptr);
}

}  // namespace vlclientui::test
