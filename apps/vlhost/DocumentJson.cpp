#include "DocumentJson.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::vlhost {
namespace {

using Json = nlohmann::ordered_json;

// Documents are bounded in depth by their reader.
Json jsonOf(const XmlNode& element) {
  Json object{{"name", element.name()}};
  for (const auto& [name, value] : element.attributes()) object["attributes"][name] = value;
  Json children = Json::array();
  for (const XmlNodePtr& child : element.childNodes()) {
    if (child->kind() == XmlNodeKind::Element) children.push_back(jsonOf(*child));
  }
  if (children.empty()) {
    object["text"] = element.text();
  } else {
    object["children"] = std::move(children);
  }
  return object;
}

}  // namespace

std::string documentJson(const std::string& document, const XmlService& xml) {
  const auto parsed = xml.createDocument();
  if (!parsed->loadXml(document)) throw RuntimeFailure("the service told no document");
  return jsonOf(*parsed->documentElement()).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace vlclientui::vlhost
