#include "client/facade/ServerInfoAnswer.h"

#include "client/raster/DocumentWriter.h"

namespace vlclientui::client {
namespace {

void writeService(std::string& out, const ServiceRecord& service) {
  const Element element(out, "Service");
  writeText(out, "Name", service.name);
  writeImageServiceInfo(out, service.name, service.facts);
}

}  // namespace

std::string serverInfoAnswer(const std::vector<ServiceRecord>& services) {
  std::string out = "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services>";
  out.reserve(services.size() * 1024 + 256);
  for (const ServiceRecord& service : services) writeService(out, service);
  out += "</Services></ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>";
  return out;
}

}  // namespace vlclientui::client
