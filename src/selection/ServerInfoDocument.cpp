#include "selection/ServerInfoDocument.h"

#include <algorithm>
#include <utility>

#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"

namespace vlclientui {

namespace {

constexpr const char* providersPath = "//Vorlane/Server/Info/Detailed/ServiceProviders";
constexpr const char* servicesOfProvider = "Services";
constexpr const char* servicesInProvider = "descendant-or-self::ServiceProvider/Services";
constexpr const char* nestedServices = "//Service//Service";
constexpr const char* nameOfService = "Name";
constexpr const char* infoOfService = "ImageServiceInfo";
constexpr const char* infoNameOfService = "ImageServiceInfo/Name";
constexpr const char* titleOfService = "ImageServiceInfo/KeyDetails/Title";
constexpr const char* envelopeOfService = "ImageServiceInfo/GeographicEnvelope/";

/// Documents write "." under every locale, and no group separators.
const LocaleFormat documentNumbers{".", "", ""};

void readCorner(const XmlNode& service, const char* corner, double& value) {
  const auto text = readText(service, std::string(envelopeOfService) + corner);
  if (text) value = textToDouble(*text, documentNumbers);
}

void readExtent(const XmlNode& service, ServiceExtent& extent) {
  readCorner(service, "XMin", extent.xMin);
  readCorner(service, "XMax", extent.xMax);
  readCorner(service, "YMin", extent.yMin);
  readCorner(service, "YMax", extent.yMax);
}

/// The first service of that whole name, as a record.
std::optional<ServiceRecord> findService(const XmlDocument& serverInfo, const std::string& shortName) {
  const XmlNodePtr providers = findProviders(serverInfo);
  if (!providers) return std::nullopt;
  const std::string searched = lowerCased(shortName);
  const bool nested = hasNestedServices(serverInfo);
  for (const XmlNodePtr& provider : providers->childNodes()) {
    const XmlNodePtr services = provider->selectSingleNode(servicesInProvider);
    if (!services) continue;
    for (const XmlNodePtr& service : services->childNodes()) {
      ServiceRecord record(service, nested);
      if (record.hasInfoName() && lowerCased(record.name()) == searched) return record;
    }
  }
  return std::nullopt;
}

}  // namespace

XmlNodePtr findProviders(const XmlDocument& serverInfo) { return serverInfo.selectSingleNode(providersPath); }

bool IsInViewExtent(const ServiceExtent& view, const ServiceExtent& service) {
  return !(service.xMin > view.xMax || service.xMax < view.xMin || service.yMin > view.yMax ||
           service.yMax < view.yMin);
}

std::optional<std::vector<std::string>> readServiceNames(const XmlDocument& serverInfo,
                                                         const ExtentTest& test) {
  const XmlNodePtr providers = findProviders(serverInfo);
  if (!providers) return std::nullopt;
  std::vector<std::string> names;
  ServiceExtent extent;
  for (const XmlNodePtr& provider : providers->childNodes()) {
    const XmlNodePtr services = provider->selectSingleNode(servicesOfProvider);
    if (!services) continue;
    for (const XmlNodePtr& service : services->childNodes()) {
      if (test) {
        readExtent(*service, extent);
        if (!test(extent)) continue;
      }
      if (auto name = readText(*service, nameOfService)) names.push_back(std::move(*name));
    }
  }
  return names;
}

std::string FindServiceTitle(const XmlDocument& serverInfo, const std::string& shortName) {
  const auto service = findService(serverInfo, shortName);
  const XmlNodePtr title = service ? service->find(titleOfService) : nullptr;
  return title ? title->text() : std::string();
}

std::string FindServiceInfoXml(const XmlDocument& serverInfo, const std::string& shortName) {
  const auto service = findService(serverInfo, shortName);
  const XmlNodePtr info = service ? service->find(infoOfService) : nullptr;
  return info ? info->xml() : std::string();
}

ServiceRecord::ServiceRecord(XmlNodePtr service, bool nested)
    : service_(std::move(service)), searchDeep_(nested || service_->name() != "Service") {}

XmlNodePtr ServiceRecord::find(const std::string& path) const {
  return service_->selectSingleNode(searchDeep_ ? "descendant-or-self::Service/" + path : path);
}

bool ServiceRecord::hasInfoName() const { return find(infoNameOfService) != nullptr; }

std::string ServiceRecord::name() const {
  const XmlNodePtr node = find(nameOfService);
  std::string name = node ? node->text() : std::string();
  std::ranges::replace(name, '\\', '/');
  return name;
}

bool hasNestedServices(const XmlDocument& serverInfo) {
  return serverInfo.selectSingleNode(nestedServices) != nullptr;
}

}  // namespace vlclientui
