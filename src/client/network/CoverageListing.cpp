#include "client/network/CoverageListing.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/network/CoverageFacts.h"
#include "client/network/CoverageRaster.h"
#include "client/network/ServiceNames.h"
#include "client/raster/GeographicBounds.h"

namespace vlclientui::client {
CoverageNames coverageNames(const CoverageCapabilities& capabilities) {
  std::vector<std::string> ids;
  ids.reserve(capabilities.coverages.size());
  // Some servers list a coverage twice; it is one service all the same.
  std::unordered_set<std::string_view> listed;
  for (const CoverageSummary& summary : capabilities.coverages) {
    if (listed.insert(summary.id).second) ids.push_back(summary.id);
  }
  std::vector<std::string> shown = serviceNames(ids);
  CoverageNames names;
  for (std::size_t i = 0; i < ids.size(); ++i) names.emplace(std::move(shown[i]), std::move(ids[i]));
  return names;
}

CatalogueEntry coverageEntry(const std::string& address, const std::string& name, const std::string& id) {
  CatalogueEntry entry;
  entry.folder = folderOfName(name);
  entry.name = name;
  entry.file = coverageRasterName(address, id);
  return entry;
}

CatalogueContent coverageContent(
    const std::string& address, const CoverageCapabilities& capabilities, const CoverageNames& names,
    const std::vector<std::shared_ptr<const CoverageDescription>>& descriptions) {
  std::unordered_map<std::string_view, const CoverageSummary*> summaries;
  for (const CoverageSummary& summary : capabilities.coverages) summaries.emplace(summary.id, &summary);
  GeographicBounds geographic;
  CatalogueContent content;
  content.services.reserve(names.size());
  std::size_t next = 0;
  for (const auto& [name, id] : names) {
    ServiceRecord& service = content.services.emplace_back();
    service.name = name;
    service.entry = coverageEntry(address, name, id);
    service.facts = coverageFacts(*summaries.at(id), descriptions[next++].get(), geographic);
    service.place = service.entry.file;
  }
  return content;
}

}  // namespace vlclientui::client
