#include "client/raster/Subdatasets.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>

#include <cpl_error.h>
#include <cpl_string.h>

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr int mostRasters = 1000;

// Formats put the part behind the file's name, some with slashes, or a number before it.
std::string partOf(const std::string& name, const std::string& container) {
  constexpr std::string_view around = "\":/ ";
  const std::size_t at = name.find(container);
  if (at == std::string::npos) return {};
  const std::string behind = name.substr(at + container.size());
  const std::size_t first = behind.find_first_not_of(around);
  if (first != std::string::npos) return behind.substr(first);
  const std::string before = name.substr(0, at);
  const std::size_t last = before.find_last_not_of(around);
  if (last == std::string::npos) return {};
  return before.substr(before.find_last_of(':', last) + 1, last - before.find_last_of(':', last));
}

// As a path without empty steps and without such that lead elsewhere.
std::string innerPathFrom(const std::string& part) {
  std::string inner;
  for (const fs::path& step : fs::path(part)) {
    const bool isName = !step.empty() && step != "." && step != ".." && step != "/";
    if (isName) inner += (inner.empty() ? "" : "/") + step.string();
  }
  return inner;
}

std::string unique(std::string inner, int number, std::set<std::string>& taken) {
  if (inner.empty()) inner = std::to_string(number);
  if (!taken.insert(inner).second) {
    inner += " " + std::to_string(number);
    taken.insert(inner);
  }
  return inner;
}

// Any file can tell such parts. They are names of the container's own, not of other files or texts.
bool leadsElsewhere(const std::string& part, const std::string& container) {
  constexpr std::string_view ownFiles = "/vsivl";  // these are opened as what a person chose
  const std::size_t first = part.find_first_not_of(" \t\r\n");
  if (first == std::string::npos || part[first] == '<') return true;
  if (part.find(ownFiles) != std::string::npos && !container.starts_with(ownFiles)) return true;
  std::error_code error;
  const bool isFile = part.starts_with('/') || fs::exists(part, error);
  return isFile && part.find(container) == std::string::npos;
}

std::string nameWithin(const ContainerContent& content, const std::string& inner) {
  const auto found = std::ranges::find(content.rasters, inner, &ContainedRaster::inner);
  return found == content.rasters.end() ? std::string() : found->name;
}

std::string nameOfSubdataset(const std::string& container, const std::string& inner) {
  const DatasetPtr dataset = openRaster(container);
  return dataset ? nameWithin(subdatasetsOf(*dataset, container), inner) : std::string();
}

// A file of the archive, or what one of its files holds.
std::string nameInArchive(const fs::path& archive, const std::string& inner) {
  const ContainerContent content = archiveContent(archive);
  const std::string whole = nameWithin(content, inner);
  if (!whole.empty()) return whole;
  for (const ContainedRaster& file : content.rasters) {
    if (!inner.starts_with(file.inner + '/')) continue;
    return nameOfSubdataset(file.name, inner.substr(file.inner.size() + 1));
  }
  return {};
}

}  // namespace

ContainerContent subdatasetsOf(GDALDataset& container, const std::string& name) {
  ContainerContent content;
  std::set<std::string> taken;
  const CPLStringList items(CSLDuplicate(container.GetMetadata("SUBDATASETS")));
  for (int number = 1; number <= mostRasters; ++number) {
    const std::string key = "SUBDATASET_" + std::to_string(number) + "_NAME";
    const char* part = items.FetchNameValue(key.c_str());
    if (part == nullptr) return content;
    if (leadsElsewhere(part, name)) continue;
    content.rasters.push_back({unique(innerPathFrom(partOf(part, name)), number, taken), part});
  }
  const int count = items.Count() / 2;
  if (count > mostRasters) {
    content.problem = "it holds " + std::to_string(count) + " rasters, of which the first " +
                      std::to_string(mostRasters) + " are listed";
  }
  return content;
}

std::string libraryName(const fs::path& raster) {
  const fs::path container = containerOf(raster);
  if (container.empty()) return raster.string();
  const std::string inner = innerPathOf(raster);
  return isArchive(container) ? nameInArchive(container, inner) : nameOfSubdataset(container.string(), inner);
}

DatasetPtr openRasterAt(const fs::path& raster) {
  const std::string name = libraryName(raster);
  if (!name.empty()) return openRaster(name);
  CPLError(CE_Failure, CPLE_OpenFailed, "%s holds no raster of that name", fileOnDisk(raster).c_str());
  return nullptr;
}

}  // namespace vlclientui::client
