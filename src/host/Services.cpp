#include "host/Services.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "frame/InitProtocol.h"
#include "selection/ServerInfoDocument.h"
#include "selection/ServerInfoRequest.h"
#include "selection/ServiceDetails.h"

namespace vlclientui::host {
namespace {

std::optional<double> numberAt(const XmlNode& node, std::string_view path) {
  const std::string text = textAt(node, path);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<GeographicEnvelope> envelopeIn(const XmlNode& info) {
  const auto xMin = numberAt(info, "GeographicEnvelope/XMin");
  const auto yMin = numberAt(info, "GeographicEnvelope/YMin");
  const auto xMax = numberAt(info, "GeographicEnvelope/XMax");
  const auto yMax = numberAt(info, "GeographicEnvelope/YMax");
  if (!xMin || !yMin || !xMax || !yMax) return std::nullopt;
  return GeographicEnvelope{*xMin, *yMin, *xMax, *yMax};
}

ServiceDescription describe(const XmlNode& service) {
  ServiceDescription description;
  description.name = textAt(service, "Name");
  std::replace(description.name.begin(), description.name.end(), '\\', '/');
  const XmlNodePtr info = service.selectSingleNode("ImageServiceInfo");
  if (!info) return description;
  description.title = textAt(*info, "KeyDetails/Title");
  description.region = textAt(*info, "KeyDetails/GeographicRegion");
  description.pixelUnit = textAt(*info, "KeyDetails/PixelUnit");
  description.pixelSource = textAt(*info, "KeyDetails/PixelSource");
  description.colorSpace = ColorSpaceName(textAt(*info, "ColorSpace"));
  description.pixelType = textAt(*info, "PixelType");
  description.bitDepth = textAt(*info, "BitDepth");
  description.bands = textAt(*info, "NBands");
  description.envelope = envelopeIn(*info);
  return description;
}

}  // namespace

std::string serverInfoRequest(const std::string& server) {
  buildClientXADefPath();
  const auto request = BuildServerInfoRequest(server, serviceListLevel);
  if (!request) throw RuntimeFailure("The definitions VLClient.XADef cannot be read");
  return *request;
}

std::string serviceReference(const std::string& server, const std::string& name) {
  std::string folder = server;
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  return "ImageService://" + folder + (folder == "/" ? "" : "/") + name;
}

std::vector<ServiceDescription> readServices(const XmlService& xml, const std::string& serverInfo) {
  const auto document = xml.createDocument();
  if (!document->loadXml(serverInfo)) throw RuntimeFailure("The server's answer is no XML document");
  const XmlNodePtr providers = findProviders(*document);
  if (!providers) throw RuntimeFailure("The server's answer holds no list of services");
  std::vector<ServiceDescription> services;
  for (const XmlNodePtr& service : providers->selectNodes("ServiceProvider/Services/Service")) {
    services.push_back(describe(*service));
  }
  return services;
}

}  // namespace vlclientui::host
