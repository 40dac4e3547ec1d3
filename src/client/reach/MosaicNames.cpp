#include "client/reach/MosaicNames.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include <cpl_error.h>
#include <cpl_minixml.h>
#include <cpl_string.h>

#include "client/reach/Places.h"
#include "client/reach/RasterNames.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

struct XmlCloser {
  void operator()(CPLXMLNode* node) const { CPLDestroyXMLNode(node); }
};

// Elements of virtual rasters and of virtual tables that name what is opened.
constexpr auto naming = std::to_array<std::string_view>(
    {"SourceFilename", "SourceDataset", "SrcDataSource", "SourceImage", "OverviewFile", "DatasetName"});
// The same for items of metadata and options, by their key.
constexpr auto namingKeys =
    std::to_array<std::string_view>({"X_DATASET", "Y_DATASET", "OVERVIEW_FILE", "RPC_DEM", "RPC_DEM_FILE",
                                     "DEM_FILE", "CUTLINE_DS", "SRC_METHOD_FILE"});

bool isOneOf(std::string_view name, const auto& names) {
  return std::ranges::any_of(names, [&](std::string_view one) {
    return EQUAL(std::string(name).c_str(), std::string(one).c_str());
  });
}

std::string textIn(const CPLXMLNode& node) {
  for (const CPLXMLNode* child = node.psChild; child != nullptr; child = child->psNext) {
    if (child->eType == CXT_Text) return child->pszValue;
  }
  return {};
}

bool namesAFile(CPLXMLNode& node) {
  if (isOneOf(node.pszValue, naming)) return true;
  const char* const key = CPLGetXMLValue(&node, "key", CPLGetXMLValue(&node, "name", ""));
  return isOneOf(key, namingKeys) || isOneOf(node.pszValue, namingKeys);
}

bool runsCode(const CPLXMLNode& node) {
  const bool tellsLanguage = isOneOf(node.pszValue, std::array<std::string_view, 1>{"PixelFunctionLanguage"});
  return isOneOf(node.pszValue, std::array<std::string_view, 1>{"PixelFunctionCode"}) ||
         (tellsLanguage && !EQUAL(textIn(node).c_str(), "C"));
}

// What a name may mean. The raster library takes a missing or odd mark of relative names one way in bands of
// one kind and the other way in those of another, so only a plain mark counts, on elements that have it.
// Relative names of other kinds, as "NETCDF:a.nc:b", are put together by the library and looked at when it
// opens them.
std::vector<std::string> namesIn(CPLXMLNode& node, const fs::path& folder) {
  const std::string name = textIn(node);
  if (name.empty()) return {};
  const std::string behindFolder = (folder / name).string();
  const bool isMarked = std::string_view(CPLGetXMLValue(&node, "relativeToVRT", "")) == "1";
  const bool isOfADrive = name.size() > 1 && name[1] == ':';
  if (isMarked && !isOfADrive && isOneOf(node.pszValue, naming)) return {behindFolder};
  const bool isText = name.find('<') != std::string::npos;
  if (isText || behindFolder == name) return {name};
  return {name, behindFolder};
}

bool holdsAnAddress(std::string_view text) { return text.find(":/") != std::string_view::npos; }

// Those without files of shifts between systems.
bool isPlainProjection(std::string text) {
  constexpr std::string_view noGrids = "grids=@null";
  for (std::size_t at = text.find(noGrids); at != std::string::npos; at = text.find(noGrids)) {
    text.erase(at, noGrids.size());
  }
  const auto holds = [&](const char* part) { return text.find(part) != std::string::npos; };
  return text.starts_with('+') && !holds("grids") && !holds("file") && !holds("init") && !holds("/");
}

// Systems of coordinates may also be told as addresses and files, which the raster library then reads.
bool isPlainSystem(std::string_view text) {
  constexpr auto known =
      std::to_array<std::string_view>({"WGS84", "WGS72", "NAD27", "NAD83", "OGC:CRS84", "OGC:CRS83"});
  constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return true;
  const std::string_view plain = text.substr(first, text.find_last_not_of(blanks) - first + 1);
  if (isOneOf(plain, known)) return true;
  const std::size_t end = std::min(plain.find_first_not_of(letters), plain.size());
  if (end == 0 || end == plain.size()) return isPlainProjection(std::string(plain));
  const bool isCode =
      plain[end] == ':' && plain.find_first_not_of("0123456789", end + 1) == std::string_view::npos;
  return plain[end] == '[' || isCode;
}

bool isOneNamed(std::string_view name, std::string_view other) {
  return isOneOf(name, std::array<std::string_view, 1>{other});
}

bool endsAsSystem(std::string_view name) {
  constexpr std::string_view ending = "SRS";
  return name.size() >= ending.size() && isOneNamed(name.substr(name.size() - ending.size()), ending);
}

bool tellsASystem(CPLXMLNode& node) {
  if (endsAsSystem(node.pszValue)) return true;
  if (node.eType == CXT_Attribute) return isOneNamed(node.pszValue, "Projection");
  return endsAsSystem(CPLGetXMLValue(&node, "key", CPLGetXMLValue(&node, "name", "")));
}

// There addresses are words for people.
bool isForPeople(const CPLXMLNode& node) {
  constexpr auto words = std::to_array<std::string_view>(
      {"Description", "Metadata", "MDI", "Category", "CategoryNames", "GDALRasterAttributeTable"});
  const std::string_view name = node.pszValue;
  const bool isOfXml = name.starts_with("xmlns") || name.starts_with("xsi:");
  return isOneOf(name, words) || (node.eType == CXT_Attribute && isOfXml);
}

using SourceTree = std::unique_ptr<CPLXMLNode, XmlCloser>;

SourceTree treeOf(const std::string& text) {
  CPLPushErrorHandler(CPLQuietErrorHandler);
  SourceTree tree(CPLParseXMLString(text.c_str()));
  CPLPopErrorHandler();
  CPLErrorReset();
  return tree;
}

class MosaicLook {
 public:
  MosaicLook(fs::path folder, const Places& places) : folder_(std::move(folder)), places_(places) {}

  // In a loop, since such a document may be deep.
  [[nodiscard]] std::string refusal(CPLXMLNode* first) const {
    std::vector<Step> steps{{first, Words::OfTheMosaic}};
    while (!steps.empty()) {
      const Step step = steps.back();
      steps.pop_back();
      if (step.node == nullptr) continue;
      if (std::string found = refusalOfNode(*step.node, step.words); !found.empty()) return found;
      steps.push_back({step.node->psNext, step.words});
      const bool areFree = isNamed(*step.node) && (namesAFile(*step.node) || isForPeople(*step.node));
      steps.push_back({step.node->psChild, areFree ? Words::Free : step.words});
    }
    return {};
  }

 private:
  enum class Words { OfTheMosaic, Free };
  struct Step {
    CPLXMLNode* node = nullptr;
    Words words = Words::OfTheMosaic;
  };

  static bool isNamed(const CPLXMLNode& node) {
    return node.eType == CXT_Element || node.eType == CXT_Attribute;
  }

  [[nodiscard]] std::string refusalOfNode(CPLXMLNode& node, Words words) const {
    if (node.eType == CXT_Text && words == Words::OfTheMosaic) return refusalOfWords(node.pszValue);
    if (!isNamed(node)) return {};
    if (runsCode(node)) return "it runs code of its own, which is not done";
    if (namesAFile(node)) return refusalOfSource(node);
    const bool isRead = words == Words::OfTheMosaic || isOneNamed(node.pszValue, "MDI");
    return isRead && tellsASystem(node) ? refusalOfSystem(textIn(node)) : std::string();
  }

  [[nodiscard]] std::string refusalOfWords(std::string_view text) const {
    const bool isAllowed = places_.allowance()->addresses || !holdsAnAddress(text);
    return isAllowed ? std::string()
                     : "it holds an address where a name or number belongs, which files do not open by "
                       "themselves; VLCLIENTUI_ALLOW_OUTSIDE may say \"addresses\"";
  }

  [[nodiscard]] std::string refusalOfSystem(const std::string& text) const {
    if (holdsAnAddress(text)) return refusalOfWords(text);
    return isPlainSystem(text) ? std::string() : "its coordinate system is no plain definition";
  }

  [[nodiscard]] std::string refusalOfSource(CPLXMLNode& node) const {
    for (const std::string& name : namesIn(node, folder_)) {
      std::string found = refusalOfName(name, places_, NameOrigin::Written);
      if (!found.empty()) return found;
    }
    return {};
  }

  fs::path folder_;
  const Places& places_;
};

// Names that are relative to nothing are so to where the program was started.
void addSourcesOf(CPLXMLNode& node, const fs::path& folder, std::vector<fs::path>& sources) {
  for (const std::string& name : namesIn(node, folder)) {
    const fs::path source(name);
    std::error_code error;
    const bool isHere = !source.is_absolute() && fs::exists(source, error);
    if (isHere) sources.push_back(fs::absolute(source, error));
    if (source.is_absolute()) sources.push_back(source);
  }
}

thread_local int textsInTexts = 0;

class TextInText {
 public:
  TextInText() { ++textsInTexts; }
  ~TextInText() { --textsInTexts; }
  TextInText(const TextInText&) = delete;
  TextInText& operator=(const TextInText&) = delete;

  // Texts may stand in place of the files that others name.
  static bool isTooDeep() { return textsInTexts > deepest; }

 private:
  static constexpr int deepest = 4;
};

}  // namespace

std::string refusalOfMosaic(const std::string& text, const fs::path& folder, const Places& places) {
  if (places.allowance()->everything) return {};
  const TextInText one;
  if (TextInText::isTooDeep()) return "texts stand in place of files too deep in each other";
  const SourceTree tree = treeOf(text);
  if (!tree) return {};
  return MosaicLook(folder, places).refusal(tree.get());
}

std::vector<fs::path> sourcesOfMosaic(const std::string& text, const fs::path& folder) {
  std::vector<fs::path> sources;
  const SourceTree tree = treeOf(text);
  std::vector<CPLXMLNode*> steps{tree.get()};
  while (!steps.empty()) {
    CPLXMLNode* const node = steps.back();
    steps.pop_back();
    if (node == nullptr) continue;
    steps.push_back(node->psNext);
    if (node->eType != CXT_Element) continue;
    if (isOneOf(node->pszValue, naming)) addSourcesOf(*node, folder, sources);
    steps.push_back(node->psChild);
  }
  return sources;
}

}  // namespace vlclientui::client
