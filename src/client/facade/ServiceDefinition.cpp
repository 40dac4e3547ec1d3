#include "client/facade/ServiceDefinition.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

struct Page {
  std::string_view key;
  std::string_view file;
  std::string_view wrapper;
  std::string_view path;
  std::string_view parent;  ///< the element around the page; empty for a root
};

constexpr std::array<Page, 4> pages = {{
    {"ClientXADef", "VLClient.XADef", "XADef", "/Vorlane/ImageServiceProperties", "Vorlane"},
    {"ClientXFDef", "VLClient.Xfdef", "XFDef", "/Vorlane/ImageServiceProperties", "Vorlane"},
    {"ServiceMetadataXADef", "VLClient.XADef", "XADef", "/Vorlane/Metadata", ""},
    {"ServiceMetadataXFDef", "VLClient.Xfdef", "XFDef", "/Vorlane/Metadata", ""},
}};

constexpr std::string_view adaptedPage = "ClientXADef";

std::string within(std::string_view name, const std::string& content) {
  if (name.empty()) return content;
  return "<" + std::string(name) + ">" + content + "</" + std::string(name) + ">";
}

std::string listed(const std::vector<std::string>& values) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : "; ") + value;
  return list;
}

void setWord(const XmlNode& page, const std::string& element, const std::string& word,
             const std::string& value) {
  const XmlNodePtr node = page.selectSingleNode(element);
  if (node) node->setAttribute(element + word, value);
}

constexpr auto choiceElement = "Asset";

// There is no choice where sources are rasters of their own.
void removeChoice(const XmlNode& page) {
  const XmlNodePtr node = page.selectSingleNode(std::string(".//") + choiceElement);
  if (node) node->parentNode()->removeChild(node);
}

void adapt(const XmlNode& page, const DefinitionFacts& facts) {
  if (!facts.choices.empty()) setWord(page, choiceElement, "_LIST_", listed(facts.choices));
  if (!facts.isMosaic) setWord(page, "MosaicMethod", "_LIST_", "None");
  if (!facts.attributeNames.empty()) setWord(page, "TileOrderField", "_LIST_", listed(facts.attributeNames));
}

[[noreturn]] void failMissing(const Page& page) {
  throw RuntimeFailure("There is no definition " + std::string(page.key) + " for this service");
}

}  // namespace

std::int32_t definitionKind(const std::string& key) {
  const auto* found =
      std::find_if(pages.begin(), pages.end(), [&](const Page& page) { return page.key == key; });
  if (found == pages.end()) throw RuntimeFailure("An image service has no property " + key);
  return static_cast<std::int32_t>(found - pages.begin()) + 1;
}

std::string serviceDefinition(std::int32_t kind, const std::filesystem::path& folder,
                              const DefinitionFacts& facts, const XmlService& xml) {
  if (kind < 1 || kind > static_cast<std::int32_t>(pages.size())) {
    throw RuntimeFailure("There is no definition of kind " + std::to_string(kind));
  }
  const Page& page = pages[static_cast<std::size_t>(kind) - 1];
  const auto document = xml.createDocument();
  if (folder.empty() || !document->load((folder / page.file).string())) failMissing(page);
  const auto node = document->selectSingleNode(page.path);
  if (!node) failMissing(page);
  if (page.key == adaptedPage) adapt(*node, facts);
  if (facts.choices.empty()) removeChoice(*node);
  return within(page.wrapper, within(page.parent, node->xml()));
}

}  // namespace vlclientui::client
