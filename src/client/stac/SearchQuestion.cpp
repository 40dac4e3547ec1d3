#include "client/stac/SearchQuestion.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "client/stac/AddressParameters.h"
#include "client/stac/StacJson.h"
#include "client/transport/Address.h"
#include "documents/DecimalText.h"

namespace vlclientui::client {
namespace {

bool isNumber(const std::string& text) { return readDecimal(text).has_value(); }

std::string numbersOrTexts(const std::string& value) {
  std::string list;
  for (const std::string& part : splitAtCommas(value)) {
    list += list.empty() ? "" : ",";
    list += isNumber(part) ? part : stac_json::quoted(part);
  }
  return "[" + list + "]";
}

std::string texts(const std::string& value) {
  std::string list;
  for (const std::string& part : splitAtCommas(value))
    list += (list.empty() ? "" : ",") + stac_json::quoted(part);
  return "[" + list + "]";
}

std::string memberValue(std::string_view name, const std::string& value) {
  if (name == "bbox") return numbersOrTexts(value);
  if (name == "collections" || name == "ids") return texts(value);
  if (name == "limit" && isNumber(value)) return value;
  const bool isDocument = name == "intersects" || name == "query" || name == "filter";
  return isDocument && value.starts_with('{') ? value : stac_json::quoted(value);
}

}  // namespace

bool isSearchAddress(const std::string& address) {
  const auto parsed = parsedAddress(address);
  return parsed && (parsed->path.ends_with("/search") || parsed->path.ends_with("/search/"));
}

SearchQuestion searchQuestion(const std::string& address) {
  auto parsed = *parsedAddress(address);
  const std::string query = std::exchange(parsed.query, {});
  std::string members;
  for (std::size_t begin = 0; begin < query.size();) {
    const std::size_t end = std::min(query.find('&', begin), query.size());
    const std::string part = query.substr(begin, end - begin);
    const std::size_t equals = std::min(part.find('='), part.size());
    const std::string name = percentDecoded(part.substr(0, equals));
    const std::string value = percentDecoded(part.substr(std::min(equals + 1, part.size())));
    if (!name.empty()) {
      members += (members.empty() ? "" : ",") + stac_json::quoted(name) + ":" + memberValue(name, value);
    }
    begin = end + 1;
  }
  return {parsed.text(), "{" + members + "}"};
}

}  // namespace vlclientui::client
