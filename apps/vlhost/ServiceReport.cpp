#include "ServiceReport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace vlclientui::vlhost {
namespace {

using host::ServiceDescription;

constexpr std::size_t kColumns = 5;
using Row = std::array<std::string, kColumns>;

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string numberText(double value) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return error == std::errc() ? std::string(buffer.data(), end) : std::string();
}

std::string bandsText(const ServiceDescription& service) {
  if (service.bands.empty()) return service.pixelType;
  return service.bands + " x " + service.pixelType;
}

Row rowOf(const ServiceDescription& service) {
  return {service.name, service.title, bandsText(service), service.pixelSource, service.region};
}

using Widths = std::array<std::size_t, kColumns>;

Widths widthsOf(const std::vector<Row>& rows) {
  Widths widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < kColumns; ++i) widths.at(i) = std::max(widths.at(i), characters(row.at(i)));
  }
  return widths;
}

std::string lineOf(const Row& row, const Widths& widths) {
  std::string line;
  for (std::size_t i = 0; i < kColumns; ++i) {
    line += row.at(i) + std::string(widths.at(i) - characters(row.at(i)) + 2, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string jsonString(std::string_view text) {
  constexpr std::string_view hexadecimal = "0123456789abcdef";
  std::string quoted = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      quoted += {'\\', character};
    } else if (byte < 0x20) {
      quoted += "\\u00";
      quoted += {hexadecimal.at(byte >> 4U), hexadecimal.at(byte & 0xFU)};
    } else {
      quoted += character;
    }
  }
  return quoted + "\"";
}

// Whole numbers as numbers, whatever else a server sends as text.
std::string jsonCount(const std::string& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole ? std::to_string(value) : jsonString(text);
}

class JsonObject {
 public:
  void add(std::string_view name, const std::string& text, std::string (*format)(const std::string&)) {
    if (!text.empty()) addRaw(name, format(text));
  }
  void add(std::string_view name, const std::string& text) {
    if (!text.empty()) addRaw(name, jsonString(text));
  }
  void addRaw(std::string_view name, const std::string& json) {
    members_ += (members_.empty() ? "" : ", ") + jsonString(name) + ": " + json;
  }
  [[nodiscard]] std::string text() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

std::string jsonEnvelope(const host::GeographicEnvelope& envelope) {
  JsonObject object;
  object.addRaw("xMin", numberText(envelope.xMin));
  object.addRaw("yMin", numberText(envelope.yMin));
  object.addRaw("xMax", numberText(envelope.xMax));
  object.addRaw("yMax", numberText(envelope.yMax));
  return object.text();
}

std::string jsonService(const ServiceDescription& service, const std::string& server) {
  JsonObject object;
  object.add("name", service.name);
  object.add("reference", host::serviceReference(server, service.name));
  object.add("title", service.title);
  object.add("geographicRegion", service.region);
  object.add("pixelUnit", service.pixelUnit);
  object.add("pixelSource", service.pixelSource);
  object.add("colorSpace", service.colorSpace);
  object.add("pixelType", service.pixelType);
  object.add("bitDepth", service.bitDepth, jsonCount);
  object.add("bands", service.bands, jsonCount);
  if (service.envelope) object.addRaw("geographicEnvelope", jsonEnvelope(*service.envelope));
  return object.text();
}

}  // namespace

std::string serviceTable(const std::vector<ServiceDescription>& services, const std::string& server) {
  std::vector<Row> rows = {{"NAME", "TITLE", "PIXELS", "SOURCE", "REGION"}};
  std::transform(services.begin(), services.end(), std::back_inserter(rows), rowOf);
  const Widths widths = widthsOf(rows);
  std::string table;
  for (const Row& row : rows) table += lineOf(row, widths);
  table += std::to_string(services.size()) + (services.size() == 1 ? " service" : " services");
  if (!services.empty()) table += "; REFERENCE is " + host::serviceReference(server, "NAME");
  return table + "\n";
}

std::string serviceJson(const std::vector<ServiceDescription>& services, const std::string& server) {
  std::string json = "[";
  for (const ServiceDescription& service : services) {
    json += (json.size() == 1 ? "\n  " : ",\n  ") + jsonService(service, server);
  }
  return json + (services.empty() ? "]\n" : "\n]\n");
}

}  // namespace vlclientui::vlhost
