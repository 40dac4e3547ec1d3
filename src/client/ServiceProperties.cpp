#include "client/ServiceProperties.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

#include "client/Text.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr auto kProperties = "//Vorlane/ImageServiceProperties";
constexpr auto kMethod = "MosaicMethod";
constexpr auto kOrderField = "TileOrderField";
constexpr auto kOrderBase = "TileOrderBase";
constexpr auto kViewPointX = "ViewPointX";
constexpr auto kViewPointY = "ViewPointY";
constexpr auto kLockImageId = "LockImageID";

std::string textAt(const XmlNode& node, const char* path) {
  const XmlNodePtr found = node.selectSingleNode(path);
  return found ? found->text() : std::string();
}

std::string lettersOnly(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c != ' ') out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return out;
}

MosaicMethod methodFrom(const std::string& text) {
  const std::string word = lettersOnly(text);
  if (word == "lockraster") return MosaicMethod::LockRaster;
  if (word == "byattribute") return MosaicMethod::ByAttribute;
  if (word == "viewpoint" || word == "closesttoviewpoint") return MosaicMethod::ClosestToViewpoint;
  return MosaicMethod::AsDefined;
}

}  // namespace

std::optional<double> readDecimal(std::string text) {
  text = trimmed(text);
  std::replace(text.begin(), text.end(), ',', '.');
  double value = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

ServiceProperties readServiceProperties(const std::string& document, const XmlService& xml) {
  ServiceProperties properties;
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) return properties;
  const XmlNodePtr node = parsed->selectSingleNode(kProperties);
  if (!node) return properties;
  properties.method = methodFrom(textAt(*node, kMethod));
  properties.orderField = textAt(*node, kOrderField);
  properties.orderBase = textAt(*node, kOrderBase);
  properties.viewPointX = readDecimal(textAt(*node, kViewPointX));
  properties.viewPointY = readDecimal(textAt(*node, kViewPointY));
  properties.lockImageId = textAt(*node, kLockImageId);
  return properties;
}

}  // namespace vlclientui::client
