#include "client/catalogue/Catalogue.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "client/catalogue/CatalogueNames.h"
#include "client/catalogue/MosaicFacts.h"
#include "client/raster/Text.h"
#include "documents/TextCase.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

// An archive holds files, these hold parts.
constexpr int deepestContainer = 2;

std::vector<fs::path> filesToRead(const std::vector<CatalogueEntry>& entries) {
  std::vector<fs::path> files;
  for (const CatalogueEntry& entry : entries) {
    if (entry.kind == EntryKind::Raster) files.push_back(entry.file);
    for (const MosaicSource& source : entry.definition.sources) files.push_back(source.file);
  }
  return files;
}

Sibling fileSibling(const fs::path& file) { return {file.stem().string(), file.filename().string()}; }

Sibling folderSibling(const fs::path& folder) {
  return {folder.filename().string(), folder.filename().string()};
}

// A raster with the file, on the disk or in an archive, that its name comes from.
struct FoundService {
  CatalogueEntry entry;
  RasterFacts facts;
  fs::path place;
};

// What stands in the folders, and the names that come of it.
class NameTree {
 public:
  void add(const fs::path& path, const Sibling& sibling) {
    folders_[path.parent_path()].try_emplace(path, sibling);
  }

  void addFolders(fs::path path, const fs::path& root) {
    for (; path != root && path.has_relative_path(); path = path.parent_path())
      add(path, folderSibling(path));
  }

  void name() {
    for (const auto& [folder, content] : folders_) {
      std::vector<Sibling> siblings;
      for (const auto& [path, sibling] : content) siblings.push_back(sibling);
      auto names = nameSiblings(siblings);
      auto next = names.begin();
      for (const auto& [path, sibling] : content) names_[path] = std::move(*next++);
    }
  }

  /// Its name and those of all folders up to the root.
  [[nodiscard]] CatalogueName whole(const fs::path& path, const fs::path& root) const {
    const auto found = names_.find(path);
    if (path == root || found == names_.end()) return {};
    const CatalogueName above = whole(path.parent_path(), root);
    const CatalogueName& own = found->second;
    return {nameInFolder(above.shown, own.shown), nameInFolder(above.real, own.real),
            nameInFolder(above.plain, own.plain)};
  }

 private:
  std::map<fs::path, std::map<fs::path, Sibling>> folders_;
  std::map<fs::path, CatalogueName> names_;
};

// Turns entries and the results of their files into services.
class Reading {
 public:
  Reading(fs::path root, CatalogueListing listing, RasterCache& cache)
      : root_(std::move(root)), cache_(cache), folders_(std::move(listing.folders)) {
    content_.problems = std::move(listing.problems);
    for (const fs::path& folder : folders_) tree_.add(folder, folderSibling(folder));
    read(std::move(listing.entries), 0);
    nameServices();
  }

  /// Names count from the root.
  [[nodiscard]] CatalogueContent& content() { return content_; }
  [[nodiscard]] CatalogueName nameOf(const fs::path& path) const { return tree_.whole(path, root_); }
  [[nodiscard]] const std::vector<fs::path>& folders() const { return folders_; }

 private:
  void read(std::vector<CatalogueEntry> entries, int depth) {
    const std::vector<RasterResult> results = cache_.read(filesToRead(entries));
    std::size_t next = 0;
    std::vector<CatalogueEntry> deeper;
    for (CatalogueEntry& entry : entries) {
      RasterResult result = take(entry, results, next);
      if (entry.kind == EntryKind::Raster) result = containerOfPages(std::move(result));
      auto* problem = std::get_if<RasterProblem>(&result);
      if (problem == nullptr) {
        found_.push_back({entry, std::get<RasterFacts>(std::move(result)), entry.file});
      } else if (problem->contents.empty() || depth == deepestContainer) {
        leaveOut(entry.file, *problem);
      } else {
        open(entry, *problem, deeper);
      }
    }
    if (!deeper.empty()) read(std::move(deeper), depth + 1);
  }

  // Whoever names the file itself gets the first page.
  static RasterResult containerOfPages(RasterResult result) {
    auto* const facts = std::get_if<RasterFacts>(&result);
    if (facts == nullptr || facts->pages.empty()) return result;
    const std::string& problem = facts->pagesProblem;
    return RasterProblem{!problem.empty(), problem, std::move(facts->pages), ContentKind::Parts};
  }

  RasterResult take(const CatalogueEntry& entry, const std::vector<RasterResult>& results,
                    std::size_t& next) {
    if (entry.kind == EntryKind::Raster) return results[next++];
    const auto first = results.begin() + static_cast<std::ptrdiff_t>(next);
    next += entry.definition.sources.size();
    const std::vector<RasterResult> sources(first, results.begin() + static_cast<std::ptrdiff_t>(next));
    const std::vector<LeftOut>& before = entry.definition.problems;
    content_.problems.insert(content_.problems.end(), before.begin(), before.end());
    RasterResult result = mosaicFacts(entry.definition, sources, content_.problems);
    auto* facts = std::get_if<RasterFacts>(&result);
    if (facts != nullptr && facts->title.empty()) facts->title = entry.file.stem().string();
    return result;
  }

  // What cannot be read keeps its name, so that nothing is called otherwise once it can.
  void leaveOut(const fs::path& file, const RasterProblem& problem) {
    if (!problem.isRaster || isHidden(file)) return;
    content_.problems.push_back({utf8FromAny(file.string()), problem.reason});
    broken_.push_back(file);
  }

  void open(const CatalogueEntry& container, const RasterProblem& problem,
            std::vector<CatalogueEntry>& deeper) {
    if (problem.isRaster) content_.problems.push_back({utf8FromAny(container.file.string()), problem.reason});
    containers_.emplace(container.file, problem.kind);
    for (const fs::path& path : problem.contents) {
      const std::string inner = path.string().substr(container.file.string().size() + 1);
      const bool isFile = problem.kind == ContentKind::Files;
      if (isFile && (isAuxiliary(path) || isBeyondReach(inner))) continue;
      const fs::path within = container.file.filename() / fs::path(inner).parent_path();
      if (!isTextName(inner)) {
        leaveOut(path, {true, "the name is no text: it holds control characters or bytes that are no UTF-8"});
      } else {
        deeper.push_back({EntryKind::Raster, nameInFolder(container.folder, within.string()), path, {}});
      }
    }
  }

  // As in folders on the disk.
  static bool isBeyondReach(const std::string& inner) {
    const fs::path folders = fs::path(inner).parent_path();
    return std::ranges::any_of(folders,
                               [](const fs::path& step) { return isHidden(step) || step == "__MACOSX"; });
  }

  void nameServices() {
    for (const auto& [container, kind] : containers_) nameContainer(container);
    for (const fs::path& file : broken_) addName(file);
    for (const FoundService& service : found_) addName(service.place);
    tree_.name();
    for (FoundService& service : found_) {
      const std::string name = nameOf(service.place).shown;
      content_.services.push_back({name, std::move(service.entry), std::move(service.facts), service.place});
    }
    std::ranges::sort(content_.services, {}, &ServiceRecord::name);
  }

  // One with a single raster is that raster.
  void nameContainer(const fs::path& container) {
    const auto isWithin = [&](const FoundService& service) {
      return service.place.string().starts_with(container.string() + '/');
    };
    const auto inside = std::ranges::count_if(found_, isWithin);
    const auto broken = std::ranges::count_if(
        broken_, [&](const fs::path& file) { return file.string().starts_with(container.string() + '/'); });
    if (inside == 1 && broken == 0) std::ranges::find_if(found_, isWithin)->place = container;
  }

  void addName(const fs::path& path) {
    const auto parent = containers_.find(folderThatHolds(path));
    const bool isPart = parent != containers_.end() && parent->second == ContentKind::Parts;
    tree_.add(path, isPart ? folderSibling(path) : fileSibling(path));
    for (fs::path folder = path.parent_path(); folder != root_ && folder.has_relative_path();
         folder = folder.parent_path()) {
      tree_.add(folder, containers_.contains(folder) ? fileSibling(folder) : folderSibling(folder));
    }
  }

  // The innermost container around a path, or the folder that it stands in.
  [[nodiscard]] fs::path folderThatHolds(const fs::path& path) const {
    for (fs::path folder = path.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
      if (containers_.contains(folder)) return folder;
    }
    return path.parent_path();
  }

  fs::path root_;
  RasterCache& cache_;
  std::vector<fs::path> folders_;
  NameTree tree_;
  std::vector<FoundService> found_;
  std::vector<fs::path> broken_;
  std::map<fs::path, ContentKind> containers_;
  CatalogueContent content_;
};

fs::path withoutSlash(const fs::path& folder) {
  const fs::path normal = folder.lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

// Looks one service up, level by level, in no more than what its name concerns.
class Search {
 public:
  Search(const XmlService& xml, RasterCache& cache) : xml_(xml), cache_(cache) {}

  std::optional<CatalogueEntry> find(fs::path folder, std::vector<std::string> steps) {
    for (;;) {
      while (steps.size() > 1 && isListedFolder(folder / steps.front())) {
        folder /= steps.front();
        steps.erase(steps.begin());
      }
      Reading level(folder, concernedBy(folder, steps.front()), cache_);
      if (auto entry = serviceOf(level, steps)) return entry;
      const auto next = steps.size() > 1 ? folderOf(level, steps.front()) : std::nullopt;
      if (!next) return std::nullopt;
      folder = *next;
      steps.erase(steps.begin());
    }
  }

 private:
  // The name of a folder that is shown as it is; one that is shown otherwise has none of these names to
  // itself.
  static bool isListedFolder(const fs::path& path) {
    std::error_code error;
    return !isHidden(path) && fs::is_directory(path, error);
  }

  CatalogueListing concernedBy(const fs::path& folder, const std::string& name) const {
    CatalogueListing listing = scanCatalogue(folder, xml_, ScanDepth::OneFolder);
    std::vector<Sibling> siblings;
    for (const fs::path& path : listing.folders) siblings.push_back(folderSibling(path));
    for (const CatalogueEntry& entry : listing.entries) siblings.push_back(fileSibling(entry.file));
    CatalogueListing concerned;
    for (const std::size_t i : siblingsConcerned(siblings, name)) {
      if (i < listing.folders.size()) {
        concerned.folders.push_back(listing.folders[i]);
      } else {
        concerned.entries.push_back(std::move(listing.entries[i - listing.folders.size()]));
      }
    }
    return concerned;
  }

  // The shown name first; then the real one and the plain one, where it is of one service alone.
  static std::optional<CatalogueEntry> serviceOf(Reading& level, const std::vector<std::string>& steps) {
    std::vector<const ServiceRecord*> byRealName;
    std::vector<const ServiceRecord*> byPlainName;
    for (const ServiceRecord& service : level.content().services) {
      const CatalogueName name = level.nameOf(service.place);
      const std::vector<std::string> shown = splitAt(name.shown, '/');
      if (shown == steps) return service.entry;
      if (meets(shown, splitAt(name.real, '/'), steps)) byRealName.push_back(&service);
      if (meets(shown, splitAt(name.plain, '/'), steps)) byPlainName.push_back(&service);
    }
    const auto& found = byRealName.empty() ? byPlainName : byRealName;
    if (found.size() != 1) return std::nullopt;
    return found.front()->entry;
  }

  static bool meets(const std::vector<std::string>& shown, const std::vector<std::string>& other,
                    const std::vector<std::string>& steps) {
    if (shown.size() != steps.size() || other.size() != steps.size()) return false;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (steps[i] != shown[i] && steps[i] != other[i]) return false;
    }
    return true;
  }

  static std::optional<fs::path> folderOf(const Reading& level, const std::string& name) {
    for (const fs::path& folder : level.folders()) {
      if (level.nameOf(folder).shown == name) return folder;
    }
    return std::nullopt;
  }

  const XmlService& xml_;
  RasterCache& cache_;
};

// Below the catalogue: no step leads elsewhere. Doubled slashes are one.
std::vector<std::string> stepsOf(const std::string& name) {
  if (name.empty() || name.front() == '/' || name.back() == '/') return {};
  std::vector<std::string> steps = splitAt(name, '/');
  std::erase(steps, std::string());
  const auto leadsElsewhere = [](const std::string& step) { return step == "." || step == ".."; };
  if (std::ranges::any_of(steps, leadsElsewhere)) return {};
  return steps;
}

}  // namespace

CatalogueContent readCatalogue(const fs::path& folder, const XmlService& xml, RasterCache& cache) {
  const fs::path root = withoutSlash(folder);
  return std::move(Reading(root, scanCatalogue(root, xml), cache).content());
}

std::optional<CatalogueEntry> findService(const fs::path& folder, const std::string& name,
                                          const XmlService& xml, RasterCache& cache) {
  std::vector<std::string> steps = stepsOf(name);
  if (steps.empty()) return std::nullopt;
  return Search(xml, cache).find(withoutSlash(folder), std::move(steps));
}

}  // namespace vlclientui::client
