#include "ServiceReport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include <nlohmann/json.hpp>

#include "Telling.h"
#include "contracts/Utf8.h"

namespace vlclientui::vlhost {
namespace {

using host::ServiceDescription;

constexpr std::size_t columnTotal = 5;
using Row = std::array<std::string, columnTotal>;

std::string bandsText(const ServiceDescription& service) {
  if (service.bands.empty()) return service.pixelType;
  return service.bands + " x " + service.pixelType;
}

Row rowOf(const ServiceDescription& service) {
  return {terminalText(service.name), terminalText(service.title), terminalText(bandsText(service)),
          terminalText(service.pixelSource), terminalText(service.region)};
}

using Widths = std::array<std::size_t, columnTotal>;

Widths widthsOf(const std::vector<Row>& rows) {
  Widths widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < columnTotal; ++i)
      widths.at(i) = std::max(widths.at(i), utf8Characters(row.at(i)));
  }
  return widths;
}

std::string lineOf(const Row& row, const Widths& widths) {
  std::string line;
  for (std::size_t i = 0; i < columnTotal; ++i) {
    line += row.at(i) + std::string(widths.at(i) - utf8Characters(row.at(i)) + 2, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

using Json = nlohmann::ordered_json;

// Whole numbers as numbers, whatever else a server sends as text.
Json jsonCount(const std::string& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole ? Json(value) : Json(text);
}

void add(Json& object, const char* name, const std::string& text,
         Json (*format)(const std::string&) = nullptr) {
  if (!text.empty()) object[name] = format == nullptr ? Json(text) : format(text);
}

template <class Rectangle>
Json jsonRectangle(const Rectangle& rectangle) {
  return {
      {"xMin", rectangle.xMin}, {"yMin", rectangle.yMin}, {"xMax", rectangle.xMax}, {"yMax", rectangle.yMax}};
}

void addFacts(Json& object, const client::RasterFacts& facts) {
  object["columns"] = facts.columns;
  object["rows"] = facts.rows;
  if (!facts.srsName.empty()) object["coordinateSystem"]["name"] = facts.srsName;
  if (!facts.srsId.empty()) object["coordinateSystem"]["id"] = facts.srsId;
  object["extent"] = jsonRectangle(facts.envelope);
}

Json jsonService(const ServiceDescription& service, const std::string& server) {
  Json object;
  object["name"] = service.name;
  object["reference"] = host::serviceReference(server, service.name);
  add(object, "title", service.title);
  add(object, "geographicRegion", service.region);
  add(object, "pixelUnit", service.pixelUnit);
  add(object, "pixelSource", service.pixelSource);
  add(object, "colorSpace", service.colorSpace);
  add(object, "pixelType", service.pixelType);
  add(object, "bitDepth", service.bitDepth, jsonCount);
  add(object, "bands", service.bands, jsonCount);
  if (service.envelope) object["geographicEnvelope"] = jsonRectangle(*service.envelope);
  return object;
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

std::string serviceJson(const std::vector<ServiceDescription>& services,
                        const std::map<std::string, client::RasterFacts>& facts, const std::string& server) {
  Json array = Json::array();
  for (const ServiceDescription& service : services) {
    Json object = jsonService(service, server);
    if (const auto found = facts.find(service.name); found != facts.end()) addFacts(object, found->second);
    array.push_back(std::move(object));
  }
  // Names come from files, whose bytes need not be text.
  return array.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace vlclientui::vlhost
