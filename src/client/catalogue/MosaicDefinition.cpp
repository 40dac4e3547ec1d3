#include "client/catalogue/MosaicDefinition.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <system_error>

#include "client/catalogue/DefinitionWords.h"
#include "client/raster/Text.h"
#include "client/reach/Places.h"
#include "client/reach/RasterNames.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"
#include "documents/GuardedRead.h"

namespace vlclientui::client {
namespace {

namespace words = definition_words;

const std::string definitionPath = std::string("/") + words::document + "/" + words::definition;
const std::string sourcesPath = std::string(words::sources) + "/" + words::source;
const std::string attributesPath = std::string(words::attributes) + "/*";

std::optional<std::string> readWhole(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::file_size(file, error) > words::mostBytes || error) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

MosaicSource sourceFrom(const XmlNode& row, const std::filesystem::path& folder) {
  MosaicSource source;
  source.file = (folder / textAt(row, words::file)).lexically_normal();
  for (const XmlNodePtr& attribute : row.selectNodes(attributesPath)) {
    source.attributes.emplace_back(attribute->name(), attribute->text());
  }
  return source;
}

std::filesystem::path sourceFolderFrom(const XmlNode& node, const std::filesystem::path& file) {
  const std::string told = textAt(node, words::sourceFolder);
  const std::filesystem::path name = told.empty() ? file.stem().string() + words::sourcesEnding : told;
  const std::filesystem::path folder = (file.parent_path() / name).lexically_normal();
  // A trailing slash makes an empty last component, which the path of no file below would match.
  return folder.has_filename() ? folder : folder.parent_path();
}

MosaicDefinition definitionFrom(const XmlNode& node, const std::filesystem::path& file) {
  MosaicDefinition definition;
  definition.name = textAt(node, words::name);
  definition.title = textAt(node, words::title);
  definition.region = textAt(node, words::region);
  definition.pixelSource = textAt(node, words::pixelSource);
  definition.sourceFolder = sourceFolderFrom(node, file);
  std::set<std::string> taken;
  for (const XmlNodePtr& row : node.selectNodes(sourcesPath)) {
    if (textAt(*row, words::file).empty()) continue;
    definition.sources.push_back(sourceFrom(*row, file.parent_path()));
    definition.sources.back().rasterId =
        freeRasterId(taken, textAt(*row, words::rasterId), definition.sources.size());
  }
  return definition;
}

// Whoever wrote the definition may be a stranger.
void leaveOutOtherPlaces(MosaicDefinition& definition, const std::filesystem::path& file) {
  Places& places = Places::shared();
  places.pointAtFile(std::filesystem::absolute(file));
  std::erase_if(definition.sources, [&](const MosaicSource& source) {
    const std::string refusal = refusalOfName(source.file.string(), places, NameOrigin::Written);
    if (!refusal.empty()) definition.problems.push_back({utf8FromAny(source.file.string()), refusal});
    return !refusal.empty();
  });
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
  leaveOutOtherPlaces(definition, file);
  if (definition.sources.empty()) return definition.problems.front().reason;
  return definition;
}

}  // namespace

std::string freeRasterId(std::set<std::string>& taken, const std::string& told, std::size_t number) {
  std::string id = told.empty() ? std::to_string(number) : told;
  while (!taken.insert(id).second) id = std::to_string(++number);
  return id;
}

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
