#include "client/drawing/DrawingProperties.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"
#include "documents/DecimalText.h"
#include "documents/GuardedRead.h"

namespace vlclientui::client {
namespace {

constexpr auto propertiesPath = "//Vorlane/ImageServiceProperties";
constexpr auto methodElement = "MosaicMethod";
constexpr auto orderFieldElement = "TileOrderField";
constexpr auto orderBaseElement = "TileOrderBase";
constexpr auto viewPointXElement = "ViewPointX";
constexpr auto viewPointYElement = "ViewPointY";
constexpr auto lockImageIdElement = "LockImageID";
constexpr auto resamplingElement = "Resampling";
constexpr auto noDataElement = "NoData";
constexpr auto assetElement = "Asset";
constexpr auto system = "Srs/Prj";

std::string lettersOnly(const std::string& text) {
  std::string out = lowered(text);
  std::erase(out, ' ');
  return out;
}

MosaicMethod methodFrom(const std::string& text) {
  const std::string word = lettersOnly(text);
  if (word == "lockraster") return MosaicMethod::LockRaster;
  if (word == "byattribute") return MosaicMethod::ByAttribute;
  if (word == "viewpoint" || word == "closesttoviewpoint") return MosaicMethod::ClosestToViewpoint;
  return MosaicMethod::AsDefined;
}

std::optional<Resampling> resamplingFrom(const std::string& text) {
  const std::string word = lettersOnly(text);
  for (const Resampling known : {Resampling::Nearest, Resampling::Average, Resampling::Bilinear}) {
    if (word == lettersOnly(resamplingName(known))) return known;
  }
  return std::nullopt;
}

// Appends what an element lacks of another's elements, at every level. @returns whether there was any.
bool addMissing(XmlNode& node, const XmlNode& defaults) {
  bool hasAdded = false;
  for (const XmlNodePtr& element : defaults.childNodes()) {
    if (element->kind() != XmlNodeKind::Element) continue;
    const XmlNodePtr own = node.selectSingleNode(element->name());
    if (!own) node.appendChild(element);
    hasAdded = own ? addMissing(*own, *element) || hasAdded : true;
  }
  return hasAdded;
}

}  // namespace

std::string methodName(MosaicMethod method) {
  switch (method) {
    case MosaicMethod::ByAttribute:
      return "By Attribute";
    case MosaicMethod::ClosestToViewpoint:
      return "Closest to Viewpoint";
    case MosaicMethod::LockRaster:
      return "Lock Raster";
    case MosaicMethod::AsDefined:
      break;
  }
  return "None";
}

std::string resamplingName(Resampling resampling) {
  switch (resampling) {
    case Resampling::Average:
      return "Average";
    case Resampling::Bilinear:
      return "Bilinear";
    case Resampling::Nearest:
      break;
  }
  return "Nearest";
}

std::string completedProperties(const std::string& document, const std::string& otherwise,
                                const XmlService& xml) {
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) throw RuntimeFailure("The service properties are no XML document");
  const XmlNodePtr node = parsed->selectSingleNode(propertiesPath);
  if (!node) throw RuntimeFailure("The document holds no service properties");
  const auto source = xml.createDocument();
  const XmlNodePtr defaults = source->loadXml(otherwise) ? source->selectSingleNode(propertiesPath) : nullptr;
  if (!defaults) return document;
  return addMissing(*node, *defaults) ? parsed->xml() : document;
}

std::string replacedProperties(const std::string& document,
                               const std::vector<std::pair<std::string, std::string>>& texts,
                               const XmlService& xml) {
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) return document;
  for (const auto& [path, text] : texts) {
    const XmlNodePtr node = parsed->selectSingleNode(std::string(propertiesPath) + "/" + path);
    if (node) node->setText(text);
  }
  return parsed->xml();
}

DrawingProperties readDrawingProperties(const std::string& document, const XmlService& xml) {
  DrawingProperties properties;
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) return properties;
  const XmlNodePtr node = parsed->selectSingleNode(propertiesPath);
  if (!node) return properties;
  properties.methodText = textAt(*node, methodElement);
  properties.method = methodFrom(properties.methodText);
  properties.orderField = textAt(*node, orderFieldElement);
  properties.orderBase = textAt(*node, orderBaseElement);
  properties.viewPointX = readDecimal(textAt(*node, viewPointXElement));
  properties.viewPointY = readDecimal(textAt(*node, viewPointYElement));
  properties.lockImageId = textAt(*node, lockImageIdElement);
  properties.resampling = resamplingFrom(textAt(*node, resamplingElement));
  properties.noData = readDecimal(textAt(*node, noDataElement));
  properties.systemText = textAt(*node, system);
  properties.asset = textAt(*node, assetElement);
  return properties;
}

}  // namespace vlclientui::client
