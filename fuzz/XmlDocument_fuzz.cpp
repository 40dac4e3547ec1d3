// A text that loads must survive writing and reading again, and keep its text and its nodes on the way.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;

void require(bool holds) {
  if (!holds) std::abort();
}

void checkLoaded(const platform::LibXmlService& service, const XmlDocument& document) {
  const std::string written = document.xml();
  const auto again = service.createDocument();
  require(again->loadXml(written));
  require(again->xml() == written);
  require(again->documentElement()->text() == document.documentElement()->text());
  require(again->selectNodes("//*").size() == document.selectNodes("//*").size());
  require(again->selectNodes("//*[0]").size() ==
          document.selectNodes("descendant-or-self::node()/*[0]").size());
}

void moveEverything(const platform::LibXmlService& service, XmlDocument& document) {
  const auto target = service.createDocument();
  const XmlNodePtr root = target->appendChild(target->createElement("root"));
  for (const XmlNodePtr& child : document.documentElement()->childNodes()) root->appendChild(child);
  require(document.documentElement()->childCount() == 0);
  require(service.createDocument()->loadXml(target->xml()));
}

/// The first line as a path: whatever it is, it selects or fails.
void selectByFirstLine(const XmlDocument& document, std::string_view text) {
  try {
    for (const XmlNodePtr& node : document.selectNodes(text.substr(0, text.find('\n')))) (void)node->xml();
  } catch (const RuntimeFailure&) {
    // Most lines are no path.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const platform::LibXmlService service{platform::PathTranslation("/")};
  const auto document = service.createDocument();
  if (!document->loadXml(text)) {
    require(document->documentElement() == nullptr && document->xml().empty());
    require(document->loadXml("<r><a><b/></a><a b='1'/></r>"));
    selectByFirstLine(*document, text);
    return 0;
  }
  checkLoaded(service, *document);
  moveEverything(service, *document);
  return 0;
}
