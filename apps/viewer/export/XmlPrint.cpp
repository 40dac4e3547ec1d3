#include "viewer/export/XmlPrint.h"

#include <algorithm>

namespace vlclientui::viewer {
namespace {

bool closes(const std::string& tag) { return tag.starts_with("</"); }
bool opens(const std::string& tag) { return !closes(tag) && !tag.ends_with("/>"); }

}  // namespace

std::string indentedXml(const std::string& xml) {
  std::string out;
  std::size_t depth = 0;
  bool textBefore = true;  // the first tag starts no new line
  for (std::size_t at = 0; at < xml.size();) {
    if (xml[at] != '<') {
      const std::size_t end = std::min(xml.find('<', at), xml.size());
      out += xml.substr(at, end - at);
      textBefore = true;
      at = end;
      continue;
    }
    const std::size_t end = xml.find('>', at);
    if (end == std::string::npos) return xml;
    const std::string tag = xml.substr(at, end + 1 - at);
    if (closes(tag) && depth > 0) --depth;
    if (!textBefore) out += "\n" + std::string(2 * depth, ' ');
    out += tag;
    if (opens(tag)) ++depth;
    textBefore = false;
    at = end + 1;
  }
  return out;
}

}  // namespace vlclientui::viewer
