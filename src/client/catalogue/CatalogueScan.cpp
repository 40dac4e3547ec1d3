#include "client/catalogue/CatalogueScan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/raster/Text.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view definitionExtension = ".vldef";

std::string extensionOf(const fs::path& file) { return lowered(file.extension().string()); }

bool stands(const std::string& extension, const auto& list) {
  return std::find(list.begin(), list.end(), extension) != list.end();
}

bool isBelow(const fs::path& path, const fs::path& folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

class Scan {
 public:
  Scan(const XmlService& xml, ScanDepth depth) : xml_(xml), depth_(depth) {}

  CatalogueListing run(const fs::path& folder) {
    visit(folder, {});
    visitLinks();
    dropSourcesOfMosaics();
    return std::move(listing_);
  }

 private:
  void visit(const fs::path& folder, const std::string& name) {
    if (WaitScope::isGivenUp()) return;
    std::error_code error;
    const fs::path canonical = fs::canonical(folder, error);
    if (error || !visited_.insert(canonical).second) return;
    std::vector<fs::path> subfolders;
    for (const fs::path& path : sortedContent(folder)) {
      if (WaitScope::isGivenUp()) return;
      const bool isFolder = fs::is_directory(path, error);
      if (isFolder && isHidden(path)) continue;
      if (!isTextName(path.filename().string())) {
        report(path, "the name is no text: it holds control characters or bytes that are no UTF-8");
      } else if (isFolder) {
        subfolders.push_back(path);
      } else {
        addFile(path, name);
      }
    }
    listing_.folders.insert(listing_.folders.end(), subfolders.begin(), subfolders.end());
    if (depth_ == ScanDepth::Tree) visitAll(subfolders, name);
  }

  void visitAll(const std::vector<fs::path>& folders, const std::string& parent) {
    for (const fs::path& folder : folders) {
      const std::string leaf = folder.filename().string();
      const std::string name = parent.empty() ? leaf : parent + '/' + leaf;
      std::error_code error;
      if (fs::is_symlink(folder, error)) {
        links_.push_back({folder, name});
      } else {
        visit(folder, name);
      }
    }
  }

  // Only then, so that no folder vanishes behind a link to it. Links behind links are added meanwhile.
  void visitLinks() {
    for (std::size_t next = 0; next < links_.size(); ++next) {
      const auto [folder, name] = links_[next];
      visit(folder, name);
    }
  }

  std::vector<fs::path> sortedContent(const fs::path& folder) {
    std::vector<fs::path> content;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
      content.push_back(it->path());
    }
    if (error) report(folder, "the folder cannot be listed: " + error.message());
    std::sort(content.begin(), content.end());
    return content;
  }

  void addFile(const fs::path& file, const std::string& folder) {
    std::error_code error;
    if (extensionOf(file) == definitionExtension) return addMosaic(file, folder);
    if (isAuxiliary(file)) return;
    if (fs::is_symlink(file, error) && !fs::exists(file, error)) {
      return report(file, "the link leads nowhere");
    }
    if (!fs::is_regular_file(file, error)) return;
    listing_.entries.push_back({EntryKind::Raster, folder, file, {}});
  }

  void addMosaic(const fs::path& file, const std::string& folder) {
    auto read = readMosaicDefinition(file, xml_);
    if (const auto* failure = std::get_if<MosaicReadFailure>(&read)) return report(file, *failure);
    listing_.entries.push_back(
        {EntryKind::Mosaic, folder, file, std::get<MosaicDefinition>(std::move(read))});
  }

  void report(const fs::path& path, const std::string& reason) {
    if (!isHidden(path)) listing_.problems.push_back({utf8FromAny(path.string()), reason});
  }

  void dropSourcesOfMosaics() {
    std::vector<fs::path> homes;
    for (const CatalogueEntry& entry : listing_.entries) {
      if (entry.kind == EntryKind::Mosaic) homes.push_back(entry.definition.sourceFolder);
    }
    std::erase_if(listing_.entries, [&](const CatalogueEntry& entry) {
      return entry.kind == EntryKind::Raster &&
             std::any_of(homes.begin(), homes.end(),
                         [&](const fs::path& home) { return isBelow(entry.file, home); });
    });
  }

  const XmlService& xml_;
  ScanDepth depth_;
  std::set<fs::path> visited_;
  std::vector<std::pair<fs::path, std::string>> links_;  ///< folders and their names
  CatalogueListing listing_;
};

}  // namespace

CatalogueListing scanCatalogue(const fs::path& folder, const XmlService& xml, ScanDepth depth) {
  return Scan(xml, depth).run(folder.lexically_normal());
}

bool isAuxiliary(const fs::path& file) {
  static constexpr std::array<std::string_view, 37> extensions = {
      ".aux",   ".ovr", ".msk", ".prj",  ".wld", ".tfw",  ".tifw", ".jgw", ".jpgw", ".pgw",
      ".pngw",  ".bpw", ".gfw", ".j2w",  ".sdw", ".hdr",  ".stx",  ".clr", ".rrd",  ".imd",
      ".rpb",   ".pvl", ".xml", ".json", ".md",  ".html", ".htm",  ".csv", ".log",  ".pdf",
      ".vlref", ".shp", ".shx", ".dbf",  ".qpj", ".cpg",  ".lock"};
  return stands(extensionOf(file), extensions);
}

bool isHidden(const fs::path& path) { return path.filename().string().starts_with('.'); }

}  // namespace vlclientui::client
