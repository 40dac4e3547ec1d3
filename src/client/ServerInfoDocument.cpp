#include "client/ServerInfoDocument.h"

#include <cstdint>
#include <string_view>

#include "client/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::int64_t kLargestLimit = 32767;

// Opens an element for its lifetime.
class Element {
 public:
  Element(std::string& out, std::string_view name) : out_(out), name_(name) {
    out_.append("<").append(name_).append(">");
  }
  ~Element() { out_.append("</").append(name_).append(">"); }
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

 private:
  std::string& out_;
  std::string_view name_;
};

void write(std::string& out, std::string_view name, std::string_view text) {
  if (text.empty()) return;
  const Element element(out, name);
  out += xmlEscaped(text);
}

void write(std::string& out, std::string_view name, std::int64_t number) {
  write(out, name, std::to_string(number));
}

void write(std::string& out, std::string_view name, const Bounds& bounds) {
  const Element element(out, name);
  write(out, "XMin", numberText(bounds.xMin));
  write(out, "YMin", numberText(bounds.yMin));
  write(out, "XMax", numberText(bounds.xMax));
  write(out, "YMax", numberText(bounds.yMax));
}

void writeKeyDetails(std::string& out, const RasterFacts& facts) {
  const Element element(out, "KeyDetails");
  write(out, "Title", facts.title);
  write(out, "GeographicRegion", facts.region);
  write(out, "PixelUnit", facts.pixelUnit);
  write(out, "PixelSource", facts.pixelSource);
}

void writePixels(std::string& out, const RasterFacts& facts) {
  write(out, "ColorSpace", static_cast<std::int64_t>(facts.colorSpace));
  write(out, "PixelType", facts.pixelType);
  write(out, "BitDepth", facts.bitDepth);
  write(out, "NBands", facts.bandCount);
}

void writeSystem(std::string& out, const RasterFacts& facts) {
  if (facts.srsName.empty() && facts.srsId.empty()) return;
  const Element element(out, "Srs");
  write(out, "Name", facts.srsName);
  write(out, "Id", facts.srsId);
}

void writePlace(std::string& out, const RasterFacts& facts) {
  if (facts.geographicEnvelope) write(out, "GeographicEnvelope", *facts.geographicEnvelope);
  write(out, "ClientEnvelope", facts.envelope);
  writeSystem(out, facts);
  write(out, "PixelSize", numberText(facts.pixelSize));
  if (facts.columns <= kLargestLimit) write(out, "MaxNCols", facts.columns);
  if (facts.rows <= kLargestLimit) write(out, "MaxNRows", facts.rows);
}

void writeService(std::string& out, const ServiceRecord& service) {
  const Element element(out, "Service");
  write(out, "Name", service.name);
  const Element info(out, "ImageServiceInfo");
  write(out, "Name", service.name);
  writeKeyDetails(out, service.facts);
  writePixels(out, service.facts);
  writePlace(out, service.facts);
}

}  // namespace

std::string serverInfoDocument(const std::vector<ServiceRecord>& services) {
  std::string out = "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services>";
  out.reserve(services.size() * 1024 + 256);
  for (const ServiceRecord& service : services) writeService(out, service);
  out += "</Services></ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>";
  return out;
}

}  // namespace vlclientui::client
