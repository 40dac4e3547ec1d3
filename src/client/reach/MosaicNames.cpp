#include "client/reach/MosaicNames.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
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

// Relative names of other kinds, as "NETCDF:a.nc:b", are put together by the library and looked at when it
// opens them.
std::string wholeNameIn(CPLXMLNode& node, const fs::path& folder) {
  const std::string name = textIn(node);
  const bool isRelative = CPLTestBool(CPLGetXMLValue(&node, "relativeToVRT", "0"));
  return isRelative && !name.empty() ? (folder / name).string() : name;
}

using SourceTree = std::unique_ptr<CPLXMLNode, XmlCloser>;

SourceTree treeOf(const std::string& text) {
  CPLPushErrorHandler(CPLQuietErrorHandler);
  SourceTree tree(CPLParseXMLString(text.c_str()));
  CPLPopErrorHandler();
  CPLErrorReset();
  return tree;
}

void addSources(CPLXMLNode* first, const fs::path& folder, std::vector<fs::path>& sources) {
  for (CPLXMLNode* node = first; node != nullptr; node = node->psNext) {
    if (node->eType != CXT_Element) continue;
    if (isOneOf(node->pszValue, naming)) sources.emplace_back(wholeNameIn(*node, folder));
    addSources(node->psChild, folder, sources);
  }
}

class MosaicLook {
 public:
  MosaicLook(fs::path folder, const Places& places) : folder_(std::move(folder)), places_(places) {}

  [[nodiscard]] std::string refusal(CPLXMLNode* first) const {
    for (CPLXMLNode* node = first; node != nullptr; node = node->psNext) {
      if (std::string found = refusalOfNode(*node); !found.empty()) return found;
    }
    return {};
  }

 private:
  [[nodiscard]] std::string refusalOfNode(CPLXMLNode& node) const {
    if (node.eType != CXT_Element && node.eType != CXT_Attribute) return {};
    if (runsCode(node)) return "it runs code of its own, which is not done";
    if (namesAFile(node)) {
      if (std::string found = refusalOfSource(node); !found.empty()) return found;
    }
    return refusal(node.psChild);
  }

  [[nodiscard]] std::string refusalOfSource(CPLXMLNode& node) const {
    const std::string name = wholeNameIn(node, folder_);
    return name.empty() ? std::string() : refusalOfName(name, places_, NameOrigin::Written);
  }

  fs::path folder_;
  const Places& places_;
};

}  // namespace

std::string refusalOfMosaic(const std::string& text, const fs::path& folder, const Places& places) {
  if (places.allowance()->everything) return {};
  const SourceTree tree = treeOf(text);
  if (!tree) return {};
  return MosaicLook(folder, places).refusal(tree.get());
}

std::vector<fs::path> sourcesOfMosaic(const std::string& text, const fs::path& folder) {
  std::vector<fs::path> sources;
  const SourceTree tree = treeOf(text);
  addSources(tree.get(), folder, sources);
  std::erase_if(sources, [](const fs::path& source) { return !source.is_absolute(); });
  return sources;
}

}  // namespace vlclientui::client
