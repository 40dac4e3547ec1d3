#include "client/stac/AddressParameters.h"

#include <algorithm>

#include "client/transport/Address.h"

namespace vlclientui::client {
namespace {

// One parameter within a query, without "&".
struct Part {
  std::size_t begin = 0;
  std::size_t end = 0;
};

Part partAt(std::string_view query, std::size_t begin) {
  return {begin, std::min(query.find('&', begin), query.size())};
}

bool isNamed(std::string_view query, const Part& part, std::string_view name) {
  const std::string_view text = query.substr(part.begin, part.end - part.begin);
  return text.substr(0, text.find('=')) == name;
}

}  // namespace

std::string parameterOf(const std::string& address, std::string_view name) {
  const auto parsed = parsedAddress(address);
  if (!parsed) return {};
  const std::string_view query = parsed->query;
  for (Part part = partAt(query, 0); part.begin < query.size(); part = partAt(query, part.end + 1)) {
    if (!isNamed(query, part, name)) continue;
    const std::string_view text = query.substr(part.begin, part.end - part.begin);
    const std::size_t equals = text.find('=');
    return equals == std::string_view::npos ? std::string() : percentDecoded(text.substr(equals + 1));
  }
  return {};
}

std::string withReplacedParameter(const std::string& address, std::string_view name, std::string_view value) {
  auto parsed = parsedAddress(address);
  if (!parsed) return address;
  const std::string_view query = parsed->query;
  std::string kept;
  for (Part part = partAt(query, 0); part.begin < query.size(); part = partAt(query, part.end + 1)) {
    if (isNamed(query, part, name)) continue;
    kept += (kept.empty() ? "" : "&") + std::string(query.substr(part.begin, part.end - part.begin));
  }
  parsed->query = kept;
  return withParameter(parsed->text(), name, value);
}

std::vector<std::string> splitAtCommas(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    if (end > begin) parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

}  // namespace vlclientui::client
