#include "scenarios/SweepWorld.h"

#include <filesystem>

#include "scenarios/StrikingPlatform.h"
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
  server->duringCall = [this] { strike.call(); };
}

SweepWorld::~SweepWorld() { setPlatform(nullptr); }

/// A former case may have saved settings, properties or metadata.
void SweepWorld::beginFiles() const {
  for (const auto& entry : std::filesystem::directory_iterator(system->home())) {
    if (entry.path().filename() != "Program") std::filesystem::remove_all(entry.path());
  }
}

void SweepWorld::begin() {
  threadState() = {};
  beginFiles();
  refresh();
  service->type = "IImageService";
  service->saveAnswer = service->exportAnswer = true;
  Platform made = platformWithoutWindows();
  stage = makeSweepStage();
  stage->equip(made);
  strike.spareOthers(stage->strikesAtWindowsAlone());
  toolkit = std::make_shared<StrikingToolkit>(
      made.toolkit, strike,
      [this](Form& form, const std::function<void()>& script) { stage->runModal(form, script); });
  toolkit->file = "C:\\sweep.xml";
  engines = std::make_shared<StrikingPlexaFactory>(made.plexa, strike);
  made.toolkit = toolkit;
  made.plexa = engines;
  made.system = strikingSystem(made.system, strike);
  made.xml = strikingXml(made.xml, strike);
  made.clientLibrary = strikingLibrary(made.clientLibrary, strike);
  setPlatform(std::make_shared<Platform>(made));
}

void SweepWorld::refresh() {
  server->answer = serverInfoOf({"Roads/West", "Roads/East", "Relief"});
  if (toolkit) toolkit->visits.clear();
  // They tell the last failure, until another one.
  ThreadState& state = threadState();
  state.gStatus.clear();
  state.imageServicesDialogStatus.clear();
  state.exportDialogStatus.clear();
}

void SweepWorld::forget() {
  threadState() = {};
  stage.reset();
  toolkit.reset();
  engines.reset();
  service->calls.clear();
  service->savedFiles.clear();
  service->exportRequest.clear();
  server->requests.clear();
  system->createdPaths.clear();
  system->launched.clear();
  system->registryLog.clear();
}

std::string asTestName(std::string name) {
  for (char& letter : name) letter = letter == ' ' ? '_' : letter;
  return name;
}

void SweepWorld::end() {
  strike.disarm();
  stage->settle();
  setPlatform(nullptr);
}

}  // namespace vlclientui::test
