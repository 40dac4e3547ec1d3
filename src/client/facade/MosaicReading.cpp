#include "client/facade/MosaicReading.h"

#include <algorithm>
#include <utility>
#include <variant>

#include <ogr_spatialref.h>

#include "client/catalogue/MosaicFacts.h"
#include "client/catalogue/ToldRaster.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/Text.h"
#include "client/transport/Secrets.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

// Of a server that is gone not every raster is tried.
constexpr std::size_t mostSamplesTried = 5;
// So many are opened where it is not told exactly where their pixels lie.
constexpr std::size_t mostOpenedForPlace = 64;

bool isTold(const MosaicSource& source) { return source.told.has_value(); }

std::optional<Bounds> degreesOf(const Bounds& area, const RasterFacts& service) {
  if (service.srsWkt.empty()) return std::nullopt;
  const GdalScope scope;
  OGRSpatialReference system(service.srsWkt.c_str());
  GeographicBounds geographic;
  return geographic.of(area, system, service.srsWkt);
}

void failWhereGivenUp() {
  if (WaitScope::isGivenUp()) throw RuntimeFailure("The wait for the source rasters was given up");
}

// A raster that is not there, or is none, stays so and is left out. A server that is out of reach for a while
// must not leave a hole in a file.
void failWhereItMayComeBack(const fs::path& file, const RasterResult& result) {
  const auto* const problem = std::get_if<RasterProblem>(&result);
  const auto address = problem == nullptr ? std::nullopt : addressWithSecrets(file.string());
  if (!address) return;
  const auto met = RemoteFiles::shared().meet(*address);
  const auto* const trouble = std::get_if<RemoteFile::Problem>(&met);
  if (trouble == nullptr || trouble->trouble == RemoteFile::Trouble::NoFile) return;
  failWhereGivenUp();
  throw RuntimeFailure("The source raster " + withoutSecrets(*address) + " cannot be read: " + trouble->text);
}

bool isUnopenedWithin(const ImageSource& source, const Bounds& area) {
  return source.factsFrom == FactsFrom::Catalogue && overlap(source.place, area);
}

std::vector<fs::path> filesWithin(const Drawing& drawing, const Bounds& area, std::size_t most) {
  std::vector<fs::path> files;
  for (auto i = drawing.order.rbegin(); i != drawing.order.rend() && files.size() < most; ++i) {
    const ImageSource& source = drawing.service->sources[*i];
    if (isUnopenedWithin(source, area)) files.push_back(source.file);
  }
  return files;
}

// @returns why the source is left out; empty where it is not.
std::string takeOpened(ImageSource& source, const RasterResult& result, MosaicPlaces& places) {
  if (const auto* problem = std::get_if<RasterProblem>(&result)) return problem->reason;
  const auto& facts = std::get<RasterFacts>(result);
  auto place = places.of(facts);
  if (auto* reason = std::get_if<std::string>(&place)) return std::move(*reason);
  source.facts = facts;
  source.place = std::get<Bounds>(place);
  source.factsFrom = FactsFrom::File;
  return {};
}

}  // namespace

MosaicReading::MosaicReading(CatalogueEntry mosaic, FactsReader readFacts)
    : mosaic_(std::move(mosaic)), readFacts_(std::move(readFacts)) {
  // An origin holds all that it is made of; nobody else needs to.
  if (mosaic_.origin) first_ = std::exchange(mosaic_.definition, {});
}

std::optional<RasterResult> MosaicReading::known(const fs::path& file) const {
  const std::lock_guard lock(mutex_);
  const auto found = opened_.find(file.string());
  return found == opened_.end() ? std::nullopt : std::optional(found->second);
}

void MosaicReading::readFiles(std::vector<fs::path> files) {
  std::erase_if(files, [this](const fs::path& file) { return known(file).has_value(); });
  if (files.empty()) return;
  std::vector<RasterResult> results = readFacts_(files);
  failWhereGivenUp();
  for (std::size_t i = 0; i < files.size(); ++i) failWhereItMayComeBack(files[i], results[i]);
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < files.size(); ++i) opened_[files[i].string()] = std::move(results[i]);
}

// The first source that can be read, as the mosaic's first source is the one that counts.
std::optional<std::size_t> MosaicReading::readSample(const std::vector<MosaicSource>& sources) {
  for (std::size_t i = 0; i < std::min(sources.size(), mostSamplesTried); ++i) {
    readFiles({sources[i].file});
    if (std::holds_alternative<RasterFacts>(*known(sources[i].file))) return i;
  }
  return std::nullopt;
}

// What has to be opened whatever is drawn.
void MosaicReading::readNeeded(const std::vector<MosaicSource>& sources) {
  std::vector<fs::path> untold;
  std::vector<fs::path> inexact;
  for (const MosaicSource& source : sources) {
    if (!source.told) untold.push_back(source.file);
    if (source.told && !source.told->isExact()) inexact.push_back(source.file);
  }
  readFiles(std::move(untold));
  if (inexact.size() <= mostOpenedForPlace) readFiles(std::move(inexact));
}

MosaicReading::Results MosaicReading::resultsOf(const std::vector<MosaicSource>& sources) {
  const bool anyIsTold = std::ranges::any_of(sources, isTold);
  const auto sample = anyIsTold ? readSample(sources) : std::nullopt;
  if (!anyIsTold || sample) readNeeded(sources);
  std::optional<ToldFacts> told;
  if (sample) {
    const MosaicSource& source = sources[*sample];
    told.emplace(
        SampleRaster{std::get<RasterFacts>(*known(source.file)), source.told.value_or(ToldRaster())});
  }
  Results results;
  results.reserve(sources.size());
  for (const MosaicSource& source : sources) {
    if (auto result = known(source.file)) {
      results.push_back(*std::move(result));
    } else if (!told) {
      results.emplace_back(RasterProblem{true, "those before it cannot be read"});
    } else if (auto facts = told->of(*source.told, source.name)) {
      results.emplace_back(*std::move(facts));
    } else {
      results.emplace_back(RasterProblem{true, "its catalogue does not tell where it lies"});
    }
  }
  return results;
}

MosaicDefinition MosaicReading::definitionOf(const std::string& choice) {
  if (mosaic_.origin == nullptr) return mosaic_.definition;
  if (choice.empty() && edition_ == 0) {
    const std::lock_guard lock(mutex_);
    if (auto first = std::exchange(first_, std::nullopt)) return *std::move(first);
  }
  auto definition = mosaic_.origin->definition(choice);
  if (const auto* problem = std::get_if<std::string>(&definition)) throw RuntimeFailure(*problem);
  return std::get<MosaicDefinition>(std::move(definition));
}

ImageServiceRecord MosaicReading::read(ImageServiceRecord service, const std::string& choice) {
  service.edition = edition_;
  MosaicDefinition definition = definitionOf(choice);
  Results results = resultsOf(definition.sources);
  service.problems = definition.problems;
  MosaicSummary summary = summaryOf(definition, results, service.problems);
  if (const auto* problem = std::get_if<RasterProblem>(&summary.whole)) {
    const std::string why = service.problems.empty() ? std::string() : ". " + service.problems.front().reason;
    throw RuntimeFailure("The service " + service.reference + " cannot be read: " + problem->reason + why);
  }
  service.facts = std::get<RasterFacts>(std::move(summary.whole));
  if (service.facts.title.empty()) service.facts.title = mosaic_.file.stem().string();
  if (!definition.metadata.empty())
    service.metadata = std::make_shared<const FileMetadata>(definition.metadata);
  if (mosaic_.origin) service.choices = mosaic_.origin->choices();
  service.sources.clear();
  service.sources.reserve(results.size());
  for (std::size_t i = 0; i < results.size(); ++i) {
    MosaicSource& source = definition.sources[i];
    if (!summary.places[i]) continue;
    const auto factsFrom = !source.told || known(source.file) ? FactsFrom::File : FactsFrom::Catalogue;
    service.sources.push_back({std::move(source.file), std::move(source.rasterId),
                               std::move(source.attributes), std::get<RasterFacts>(std::move(results[i])),
                               *summary.places[i], std::move(source.name), factsFrom});
  }
  return service;
}

MosaicReading::RecordPtr MosaicReading::learntWithin(RecordPtr service, const Drawing& drawing,
                                                     const Bounds& area, Opening opening) {
  if (!mosaic_.origin) return service;
  const auto degrees = opening != Opening::Done ? degreesOf(area, drawing.service->facts) : std::nullopt;
  if (degrees && mosaic_.origin->learn(*degrees)) ++edition_;
  failWhereGivenUp();
  if (service->edition == edition_) return service;
  return std::make_shared<const ImageServiceRecord>(read(*service, drawing.properties.asset));
}

MosaicReading::RecordPtr MosaicReading::openedWithin(RecordPtr service, const Drawing& drawing,
                                                     const Bounds& area, Opening opening) {
  const RecordPtr learnt = learntWithin(std::move(service), drawing, area, opening);
  const bool isSame = learnt->edition == drawing.service->edition &&
                      learnt->sources.size() == drawing.service->sources.size();
  const std::size_t most = opening == Opening::Topmost ? mostForDrawing : learnt->sources.size();
  const std::vector<fs::path> files =
      filesWithin(isSame ? drawing : drawingOf(*learnt, drawing.properties), area, most);
  if (opening != Opening::Done) readFiles(files);
  std::map<std::string, RasterResult> results;
  for (const fs::path& file : files) {
    if (auto result = known(file)) results.emplace(file.string(), *std::move(result));
  }
  if (results.empty()) return learnt;
  auto opened = std::make_shared<ImageServiceRecord>(*learnt);
  const GdalScope scope;
  MosaicPlaces places(opened->facts);
  std::erase_if(opened->sources, [&](ImageSource& source) {
    const auto found = results.find(source.file.string());
    if (found == results.end() || source.factsFrom == FactsFrom::File) return false;
    const std::string reason = takeOpened(source, found->second, places);
    if (!reason.empty()) opened->problems.push_back({source.shownName(), reason});
    return !reason.empty();
  });
  return opened;
}

std::shared_ptr<const Drawing> withoutUnopened(std::shared_ptr<const Drawing> drawing, const Bounds& area) {
  const std::vector<ImageSource>& sources = drawing->service->sources;
  const auto isUnopened = [&](std::size_t i) { return isUnopenedWithin(sources[i], area); };
  if (std::ranges::none_of(drawing->order, isUnopened)) return drawing;
  auto shown = std::make_shared<Drawing>(*drawing);
  const std::size_t left = std::erase_if(shown->order, isUnopened);
  shown->remarks.push_back("The image shows the topmost source rasters; " + std::to_string(left) +
                           " more lie in it. An export, or an image of a smaller area, shows all.");
  return shown;
}

}  // namespace vlclientui::client
