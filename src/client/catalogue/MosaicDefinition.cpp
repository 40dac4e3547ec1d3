#include "client/catalogue/MosaicDefinition.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <system_error>

#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"
#include "documents/GuardedRead.h"

namespace vlclientui::client {
namespace {

constexpr std::uintmax_t largestDefinition = 16U << 20U;
constexpr auto definitionPath = "/Vorlane/MosaicDefinition";
constexpr auto nameText = "Name";
constexpr auto titleElement = "Title";
constexpr auto regionElement = "Region";
constexpr auto pixelSourceElement = "PixelSource";
constexpr auto sourceFolderElement = "SourceFolder";
constexpr auto sourcesPath = "Sources/Source";
constexpr auto fileElement = "File";
constexpr auto rasterIdElement = "RasterId";
constexpr auto attributesPath = "Attributes/*";

std::optional<std::string> readWhole(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::file_size(file, error) > largestDefinition || error) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

// Windows find a raster by its id, so ids must be unique.
std::string freeId(std::set<std::string>& taken, const std::string& told, std::size_t number) {
  std::string id = told.empty() ? std::to_string(number) : told;
  while (!taken.insert(id).second) id = std::to_string(++number);
  return id;
}

MosaicSource sourceFrom(const XmlNode& row, const std::filesystem::path& folder) {
  MosaicSource source;
  source.file = (folder / textAt(row, fileElement)).lexically_normal();
  for (const XmlNodePtr& attribute : row.selectNodes(attributesPath)) {
    source.attributes.emplace_back(attribute->name(), attribute->text());
  }
  return source;
}

std::filesystem::path sourceFolderFrom(const XmlNode& node, const std::filesystem::path& file) {
  const std::string told = textAt(node, sourceFolderElement);
  const std::filesystem::path name = told.empty() ? file.stem().string() + ".sources" : told;
  const std::filesystem::path folder = (file.parent_path() / name).lexically_normal();
  // A trailing slash makes an empty last component, which the path of no file below would match.
  return folder.has_filename() ? folder : folder.parent_path();
}

MosaicDefinition definitionFrom(const XmlNode& node, const std::filesystem::path& file) {
  MosaicDefinition definition;
  definition.name = textAt(node, nameText);
  definition.title = textAt(node, titleElement);
  definition.region = textAt(node, regionElement);
  definition.pixelSource = textAt(node, pixelSourceElement);
  definition.sourceFolder = sourceFolderFrom(node, file);
  std::set<std::string> taken;
  for (const XmlNodePtr& row : node.selectNodes(sourcesPath)) {
    if (textAt(*row, fileElement).empty()) continue;
    definition.sources.push_back(sourceFrom(*row, file.parent_path()));
    definition.sources.back().rasterId =
        freeId(taken, textAt(*row, rasterIdElement), definition.sources.size());
  }
  return definition;
}

std::variant<MosaicDefinition, MosaicReadFailure> parse(const std::string& text,
                                                        const std::filesystem::path& file,
                                                        const XmlService& xml) {
  const auto document = xml.createDocument();
  if (!document->loadXml(text)) return "the mosaic definition is not well-formed XML";
  const XmlNodePtr node = document->selectSingleNode(definitionPath);
  if (!node) return "the file holds no mosaic definition";
  MosaicDefinition definition = definitionFrom(*node, file);
  if (definition.sources.empty()) return "the mosaic definition names no sources";
  return definition;
}

}  // namespace

std::variant<MosaicDefinition, MosaicReadFailure> readMosaicDefinition(const std::filesystem::path& file,
                                                                       const XmlService& xml) {
  const auto text = readWhole(file);
  if (!text) return "the mosaic definition cannot be read";
  try {
    return parse(*text, file, xml);
  } catch (const RuntimeFailure& failure) {
    return failure.description();
  }
}

}  // namespace vlclientui::client
