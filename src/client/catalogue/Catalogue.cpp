#include "client/catalogue/Catalogue.h"

#include <algorithm>
#include <map>
#include <utility>

#include "client/catalogue/MosaicFacts.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesToRead(const std::vector<CatalogueEntry>& entries) {
  std::vector<fs::path> files;
  for (const CatalogueEntry& entry : entries) {
    if (entry.kind == EntryKind::Raster) files.push_back(entry.file);
    for (const MosaicSource& source : entry.definition.sources) files.push_back(source.file);
  }
  return files;
}

std::string joined(const std::string& folder, const std::string& leaf) {
  return folder.empty() ? leaf : folder + '/' + leaf;
}

std::string stemName(const CatalogueEntry& entry) { return joined(entry.folder, entry.file.stem().string()); }

std::string fullName(const CatalogueEntry& entry) {
  return joined(entry.folder, entry.file.filename().string());
}

// Makes services of entries and the results of reading their files.
class Reading {
 public:
  Reading(CatalogueListing listing, RasterCache& cache)
      : entries_(std::move(listing.entries)), results_(cache.read(filesToRead(entries_))) {
    content_.problems = std::move(listing.problems);
  }

  CatalogueContent run() {
    for (CatalogueEntry& entry : entries_) {
      const RasterResult result = take(entry);
      const auto* problem = std::get_if<RasterProblem>(&result);
      if (problem != nullptr && !problem->isRaster) continue;
      ++bearers_[stemName(entry)];
      if (problem != nullptr) {
        content_.problems.push_back({utf8FromAny(entry.file.string()), problem->reason});
      } else {
        content_.services.push_back({{}, std::move(entry), std::get<RasterFacts>(result)});
      }
    }
    nameServices();
    return std::move(content_);
  }

 private:
  RasterResult take(const CatalogueEntry& entry) {
    if (entry.kind == EntryKind::Raster) return results_[next_++];
    const auto first = results_.begin() + static_cast<std::ptrdiff_t>(next_);
    next_ += entry.definition.sources.size();
    const std::vector<RasterResult> sources(first, results_.begin() + static_cast<std::ptrdiff_t>(next_));
    return withTitle(mosaicFacts(entry.definition, sources, content_.problems), entry);
  }

  static RasterResult withTitle(RasterResult result, const CatalogueEntry& entry) {
    auto* facts = std::get_if<RasterFacts>(&result);
    if (facts != nullptr && facts->title.empty()) facts->title = entry.file.stem().string();
    return result;
  }

  void nameServices() {
    for (ServiceRecord& service : content_.services) {
      const bool isAlone = bearers_[stemName(service.entry)] == 1;
      service.name = isAlone ? stemName(service.entry) : fullName(service.entry);
    }
    std::sort(content_.services.begin(), content_.services.end(),
              [](const ServiceRecord& a, const ServiceRecord& b) { return a.name < b.name; });
  }

  std::vector<CatalogueEntry> entries_;
  std::vector<RasterResult> results_;
  std::size_t next_ = 0;
  std::map<std::string, int> bearers_;
  CatalogueContent content_;
};

// Below the catalogue, and by steps that it lists: hidden ones it does not, and "." and ".." are two of them.
bool isListedName(const fs::path& name) {
  return !name.is_absolute() && std::none_of(name.begin(), name.end(), [](const fs::path& step) {
    return step.string().starts_with('.');
  });
}

}  // namespace

CatalogueContent readCatalogue(const fs::path& folder, const XmlService& xml, RasterCache& cache) {
  return Reading(scanCatalogue(folder, xml), cache).run();
}

std::optional<CatalogueEntry> findService(const fs::path& folder, const std::string& name,
                                          const XmlService& xml, RasterCache& cache) {
  if (!isListedName(name)) return std::nullopt;
  const fs::path path = (folder / name).lexically_normal();
  const std::string leaf = path.filename().string();
  CatalogueListing listing = scanCatalogue(path.parent_path(), xml, ScanDepth::OneFolder);
  // All bearers of one stem are read together: whether they keep their extensions depends on all.
  std::erase_if(listing.entries, [&](const CatalogueEntry& entry) {
    const std::string stem = entry.file.stem().string();
    return stem != leaf && stem != path.stem().string();
  });
  CatalogueContent content = Reading(std::move(listing), cache).run();
  for (ServiceRecord& service : content.services) {
    if (service.name == leaf) return std::move(service.entry);
  }
  return std::nullopt;
}

}  // namespace vlclientui::client
