#include "client/ranges/WebMosaic.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_minixml.h>

#include "client/network/FileContent.h"
#include "client/ranges/RangeNames.h"
#include "client/ranges/WebSources.h"
#include "client/transport/Address.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

constexpr int deepest = 32;

// What plain mosaics are made of. Missing are warped, pansharpened and raw rasters, functions in other
// languages, options for opening and arrays: these name files in ways of their own.
constexpr auto known = std::to_array<std::string_view>({"VRTDataset",
                                                        "SRS",
                                                        "GeoTransform",
                                                        "GCPList",
                                                        "GCP",
                                                        "Metadata",
                                                        "MDI",
                                                        "VRTRasterBand",
                                                        "MaskBand",
                                                        "OverviewList",
                                                        "BlockXSize",
                                                        "BlockYSize",
                                                        "Description",
                                                        "UnitType",
                                                        "Offset",
                                                        "Scale",
                                                        "NoDataValue",
                                                        "HideNoDataValue",
                                                        "ColorInterp",
                                                        "ColorTable",
                                                        "Entry",
                                                        "CategoryNames",
                                                        "Category",
                                                        "GDALRasterAttributeTable",
                                                        "FieldDefn",
                                                        "Name",
                                                        "Type",
                                                        "Usage",
                                                        "Row",
                                                        "F",
                                                        "Histograms",
                                                        "HistItem",
                                                        "HistMin",
                                                        "HistMax",
                                                        "BucketCount",
                                                        "IncludeOutOfRange",
                                                        "Approximate",
                                                        "HistCounts",
                                                        "Overview",
                                                        "SimpleSource",
                                                        "ComplexSource",
                                                        "AveragedSource",
                                                        "KernelFilteredSource",
                                                        "SourceFilename",
                                                        "SourceBand",
                                                        "SourceProperties",
                                                        "SrcRect",
                                                        "DstRect",
                                                        "NODATA",
                                                        "UseMaskBand",
                                                        "ScaleOffset",
                                                        "ScaleRatio",
                                                        "DstMin",
                                                        "DstMax",
                                                        "SrcMin",
                                                        "SrcMax",
                                                        "Exponent",
                                                        "LUT",
                                                        "ColorTableComponent",
                                                        "Kernel",
                                                        "Size",
                                                        "Coefs",
                                                        "PixelFunctionType",
                                                        "PixelFunctionArguments",
                                                        "SourceTransferType"});

// The raster library takes an attribute for a child element of that name, so a name of a file may stand in
// one.
constexpr auto knownAttributes = std::to_array<std::string_view>({"VRTDataset.rasterXSize",
                                                                  "VRTDataset.rasterYSize",
                                                                  "VRTDataset.subClass",
                                                                  "SRS.dataAxisToSRSAxisMapping",
                                                                  "SRS.coordinateEpoch",
                                                                  "PAMRasterBand.band",
                                                                  "GCPList.Projection",
                                                                  "GCPList.dataAxisToSRSAxisMapping",
                                                                  "GCP.Id",
                                                                  "GCP.Info",
                                                                  "GCP.Pixel",
                                                                  "GCP.Line",
                                                                  "GCP.X",
                                                                  "GCP.Y",
                                                                  "GCP.Z",
                                                                  "GCP.GCPZ",
                                                                  "Metadata.domain",
                                                                  "MDI.key",
                                                                  "VRTRasterBand.band",
                                                                  "VRTRasterBand.dataType",
                                                                  "VRTRasterBand.subClass",
                                                                  "VRTRasterBand.blockXSize",
                                                                  "VRTRasterBand.blockYSize",
                                                                  "OverviewList.resampling",
                                                                  "NoDataValue.le_hex_equiv",
                                                                  "Entry.c1",
                                                                  "Entry.c2",
                                                                  "Entry.c3",
                                                                  "Entry.c4",
                                                                  "GDALRasterAttributeTable.tableType",
                                                                  "GDALRasterAttributeTable.Row0Min",
                                                                  "GDALRasterAttributeTable.BinSize",
                                                                  "FieldDefn.index",
                                                                  "Type.typeAsString",
                                                                  "Usage.usageAsString",
                                                                  "Row.index",
                                                                  "SimpleSource.resampling",
                                                                  "ComplexSource.resampling",
                                                                  "AveragedSource.resampling",
                                                                  "KernelFilteredSource.resampling",
                                                                  "SourceFilename.relativeToVRT",
                                                                  "SourceFilename.shared",
                                                                  "SourceProperties.RasterXSize",
                                                                  "SourceProperties.RasterYSize",
                                                                  "SourceProperties.DataType",
                                                                  "SourceProperties.BlockXSize",
                                                                  "SourceProperties.BlockYSize",
                                                                  "SrcRect.xOff",
                                                                  "SrcRect.yOff",
                                                                  "SrcRect.xSize",
                                                                  "SrcRect.ySize",
                                                                  "DstRect.xOff",
                                                                  "DstRect.yOff",
                                                                  "DstRect.xSize",
                                                                  "DstRect.ySize",
                                                                  "Kernel.normalized",
                                                                  "PixelFunctionArguments.k",
                                                                  "PixelFunctionArguments.fact",
                                                                  "PixelFunctionArguments.base",
                                                                  "PixelFunctionArguments.power",
                                                                  "PixelFunctionArguments.propagateNoData",
                                                                  "PixelFunctionArguments.t0",
                                                                  "PixelFunctionArguments.dt",
                                                                  "PixelFunctionArguments.t",
                                                                  "PixelFunctionArguments.amplitude_type",
                                                                  "PixelFunctionArguments.to"});

// Others may lead to files: places of pixels, overviews.
constexpr auto harmlessDomains = std::to_array<std::string_view>({"", "IMAGE_STRUCTURE", "RPC", "IMAGERY"});

struct TreeCloser {
  void operator()(CPLXMLNode* node) const { CPLDestroyXMLNode(node); }
};
using Tree = std::unique_ptr<CPLXMLNode, TreeCloser>;

/// Keeps the raster library's words about a document to itself.
class QuietScope {
 public:
  QuietScope() { CPLPushErrorHandler(CPLQuietErrorHandler); }
  ~QuietScope() {
    CPLPopErrorHandler();
    CPLErrorReset();
  }
  QuietScope(const QuietScope&) = delete;
  QuietScope& operator=(const QuietScope&) = delete;
};

// A definition, or a code of an authority. All else may be the name of a file, or an address.
bool isSystem(std::string_view text) {
  constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
  const std::size_t end = std::min(text.find_first_not_of(letters), text.size());
  if (text.empty()) return true;
  if (end == 0 || end == text.size()) return false;
  const bool isCode =
      text[end] == ':' && text.find_first_not_of("0123456789", end + 1) == std::string_view::npos;
  return text[end] == '[' || isCode;
}

std::string valueOf(CPLXMLNode& node, const char* name) { return CPLGetXMLValue(&node, name, ""); }

bool isPlainMetadata(CPLXMLNode& node) {
  const bool isHarmless =
      std::ranges::find(harmlessDomains, valueOf(node, "domain")) != harmlessDomains.end();
  return std::string_view(node.pszValue) != "Metadata" || isHarmless;
}

bool isKnownAttribute(const CPLXMLNode& node, const CPLXMLNode& attribute) {
  const std::string name = std::string(node.pszValue) + '.' + attribute.pszValue;
  return std::ranges::find(knownAttributes, name) != knownAttributes.end();
}

bool hasSystem(CPLXMLNode& node) {
  return isSystem(valueOf(node, std::string_view(node.pszValue) == "SRS" ? "" : "Projection"));
}

bool isHarmlessIn(CPLXMLNode& node, CPLXMLNode& child) {
  constexpr auto ofSideCars =
      std::to_array<std::string_view>({"PAMRasterBand", "SRS",         "GeoTransform",
                                       "GCPList",       "GCP",         "Metadata",
                                       "MDI",           "Description", "UnitType",
                                       "Offset",        "Scale",       "NoDataValue",
                                       "ColorInterp",   "ColorTable",  "Entry",
                                       "CategoryNames", "Category",    "GDALRasterAttributeTable",
                                       "FieldDefn",     "Name",        "Type",
                                       "Usage",         "Row",         "F",
                                       "Histograms",    "HistItem",    "HistMin",
                                       "HistMax",       "BucketCount", "IncludeOutOfRange",
                                       "Approximate",   "HistCounts"});
  if (child.eType == CXT_Attribute) return isKnownAttribute(node, child);
  if (child.eType != CXT_Element) return true;
  return std::ranges::find(ofSideCars, std::string_view(child.pszValue)) != ofSideCars.end() &&
         isPlainMetadata(child) && hasSystem(child);
}

void leaveHarmless(CPLXMLNode& node, int depth) {
  for (CPLXMLNode* child = node.psChild; child != nullptr;) {
    CPLXMLNode* const next = child->psNext;
    if (depth < deepest && isHarmlessIn(node, *child)) {
      leaveHarmless(*child, depth + 1);
    } else {
      CPLRemoveXMLChild(&node, child);
      CPLDestroyXMLNode(child);
    }
    child = next;
  }
}

// Without what may stand behind it, which nobody looked at.
std::string writtenAlone(CPLXMLNode& root) {
  CPLXMLNode* const behind = std::exchange(root.psNext, nullptr);
  const std::unique_ptr<char, decltype(&VSIFree)> written(CPLSerializeXMLTree(&root), &VSIFree);
  root.psNext = behind;
  return written.get();
}

/// Goes through a document and makes it openable.
class Check {
 public:
  /// @param found gets the sources.
  Check(const std::string& address, OpenableMosaic& found) : sources_(address), found_(found) {}

  /// @returns what is refused; empty for nothing.
  std::string element(CPLXMLNode& node, int depth) {
    const std::string_view name = node.pszValue;
    if (depth > deepest) return "its elements stand too deep in each other";
    if (std::ranges::find(known, name) == known.end()) return "it holds " + std::string(name);
    if (const std::string other = unknownAttribute(node); !other.empty())
      return "its " + std::string(name) + " has an attribute " + other;
    if (!isPlainKind(node))
      return "it holds a " + std::string(name) + " of kind " + valueOf(node, "subClass");
    if (!hasSystem(node)) return "its coordinate system is no definition";
    if (name == "SourceFilename") return source(node);
    return children(node, depth);
  }

 private:
  static std::string unknownAttribute(const CPLXMLNode& node) {
    for (const CPLXMLNode* child = node.psChild; child != nullptr; child = child->psNext) {
      if (child->eType == CXT_Attribute && !isKnownAttribute(node, *child)) return child->pszValue;
    }
    return {};
  }

  static bool isPlainKind(CPLXMLNode& node) {
    constexpr auto kinds =
        std::to_array<std::string_view>({"", "VRTDataset", "VRTSourcedRasterBand", "VRTDerivedRasterBand"});
    return std::ranges::find(kinds, valueOf(node, "subClass")) != kinds.end();
  }

  std::string children(CPLXMLNode& node, int depth) {
    for (CPLXMLNode* child = node.psChild; child != nullptr;) {
      CPLXMLNode* const next = child->psNext;
      if (child->eType == CXT_Element && !isPlainMetadata(*child)) {
        CPLRemoveXMLChild(&node, child);
        CPLDestroyXMLNode(child);
      } else if (child->eType == CXT_Element) {
        if (std::string refusal = element(*child, depth + 1); !refusal.empty()) return refusal;
      }
      child = next;
    }
    return {};
  }

  std::string source(CPLXMLNode& node) {
    const std::string told = valueOf(node, "");
    const auto how =
        valueOf(node, "relativeToVRT") == "1" ? WebSources::Told::FromDocument : WebSources::Told::Whole;
    const auto found = sources_.addressOf(told, how);
    if (const auto* refusal = std::get_if<WebSources::Refusal>(&found))
      return "its source \"" + textWithoutSecrets(told.substr(0, 200)) + "\" " + refusal->text;
    const std::string name = nameOfAddress(std::get<std::string>(found));
    CPLSetXMLValue(&node, "#relativeToVRT", "0");
    CPLSetXMLValue(&node, "", name.c_str());
    ++found_.sources;
    if (mayBeMosaic(name)) found_.mayBeMosaics.push_back(name);
    return {};
  }

  WebSources sources_;
  OpenableMosaic& found_;
};

}  // namespace

std::variant<OpenableMosaic, MosaicRefusal> openableMosaic(const std::string& text,
                                                           const std::string& address) {
  const QuietScope quiet;
  const auto refused = [&](const std::string& why) { return MosaicRefusal{mosaicRefusal(address, why)}; };
  if (text.find('\0') != std::string::npos) return refused("it is no text");
  const Tree tree(CPLParseXMLString(text.c_str()));
  CPLXMLNode* const root = tree ? CPLGetXMLNode(tree.get(), "=VRTDataset") : nullptr;
  if (root == nullptr) return refused("it cannot be read as XML");
  if (!parsedAddress(address)) return refused("its address is none");
  OpenableMosaic openable;
  const std::string refusal = Check(address, openable).element(*root, 0);
  if (!refusal.empty()) return refused(refusal);
  openable.text = writtenAlone(*root);
  return openable;
}

std::string mosaicRefusal(const std::string& address, const std::string& why) {
  return "The virtual raster \"" + withoutSecrets(address) + "\" is not opened: " + why + '.';
}

std::string harmlessSideCar(const std::string& text) {
  const QuietScope quiet;
  const Tree tree(text.find('\0') == std::string::npos ? CPLParseXMLString(text.c_str()) : nullptr);
  CPLXMLNode* const root = tree ? CPLGetXMLNode(tree.get(), "=PAMDataset") : nullptr;
  if (root == nullptr) return {};
  leaveHarmless(*root, 0);
  return writtenAlone(*root);
}

}  // namespace vlclientui::client
