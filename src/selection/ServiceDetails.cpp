#include "selection/ServiceDetails.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vlclientui {

namespace {

constexpr std::array<std::pair<const char*, const char*>, 9> colorSpaces{{
    {"0", "Grayscale"},
    {"1", "RGB"},
    {"2", "CMYK"},
    {"3", "YCbCr"},
    {"4", "YUV"},
    {"5", "LHS"},
    {"6", "YCCK"},
    {"7", "Palette"},
    {"255", "Unknown"},
}};

constexpr std::size_t detailCount = 7;

/// In the order of ServiceTexts.
constexpr std::array<const char*, detailCount> detailPaths{
    "ImageServiceInfo/KeyDetails/GeographicRegion",
    "ImageServiceInfo/KeyDetails/PixelUnit",
    "ImageServiceInfo/KeyDetails/PixelSource",
    "ImageServiceInfo/ColorSpace",
    "ImageServiceInfo/PixelType",
    "ImageServiceInfo/BitDepth",
    "ImageServiceInfo/NBands",
};
constexpr std::array<std::string ServiceTexts::*, detailCount> detailTexts{&ServiceTexts::geographicRegion,
                                                                           &ServiceTexts::pixelUnit,
                                                                           &ServiceTexts::pixelSource,
                                                                           &ServiceTexts::colorSpace,
                                                                           &ServiceTexts::pixelType,
                                                                           &ServiceTexts::bitDepth,
                                                                           &ServiceTexts::bands};
constexpr std::size_t colorSpaceDetail = 3;

/// `//ServiceProvider[index]/Services` for each index below the number of providers, null where it does not
/// exist. An index counts per parent: with all providers under one parent, one pass finds them all; otherwise
/// each path searches the whole document.
std::vector<XmlNodePtr> servicesByIndex(const XmlDocument& serverInfo, const XmlNode& providers) {
  std::vector<XmlNodePtr> services(providers.childCount());
  const auto named = providers.selectNodes("ServiceProvider");
  const bool inOnePlace = serverInfo.selectNodes("//ServiceProvider").size() == named.size();
  for (std::size_t i = 0; i < services.size(); ++i) {
    if (!inOnePlace) {
      services[i] = serverInfo.selectSingleNode("//ServiceProvider[" + std::to_string(i) + "]/Services");
    } else if (i < named.size()) {
      services[i] = named[i]->selectSingleNode("Services");
    }
  }
  return services;
}

}  // namespace

std::string ColorSpaceName(const std::string& code) {
  const auto* const found =
      std::ranges::find_if(colorSpaces, [&code](const auto& entry) { return code == entry.first; });
  return found == colorSpaces.end() ? std::string() : found->second;
}

ServiceDetails::ServiceDetails(const XmlDocument& serverInfo) {
  const XmlNodePtr providers = findProviders(serverInfo);
  if (!providers) return;
  const bool nested = hasNestedServices(serverInfo);
  for (const XmlNodePtr& services : servicesByIndex(serverInfo, *providers)) {
    if (!services) continue;
    for (const XmlNodePtr& node : services->childNodes()) {
      const ServiceRecord service(node, nested);
      if (!service.hasInfoName()) continue;
      firstByName_.try_emplace(service.name(), services_.size());
      services_.push_back(entryOf(service));
    }
  }
}

void ServiceDetails::read(const std::string& leafName, const std::string& wholeName,
                          ServiceTexts& texts) const {
  const auto byWhole = firstOf(wholeName);
  const auto byLeaf = firstOf(leafName);
  const std::size_t match = std::min(byWhole.value_or(services_.size()), byLeaf.value_or(services_.size()));
  if (match > 0) texts = {};
  if (match == services_.size()) return;
  for (std::size_t i = 0; i < detailCount; ++i) {
    if (const auto& text = services_[match].texts.at(i)) texts.*detailTexts.at(i) = *text;
  }
}

ServiceDetails::Entry ServiceDetails::entryOf(const ServiceRecord& service) {
  Entry entry;
  for (std::size_t i = 0; i < detailCount; ++i) {
    if (const XmlNodePtr node = service.find(detailPaths.at(i))) entry.texts.at(i) = node->text();
  }
  if (auto& code = entry.texts.at(colorSpaceDetail)) code = ColorSpaceName(*code);
  return entry;
}

std::optional<std::size_t> ServiceDetails::firstOf(const std::string& name) const {
  const auto found = firstByName_.find(name);
  return found == firstByName_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace vlclientui
