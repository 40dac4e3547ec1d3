#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "support/TestFolders.h"

namespace {

namespace fs = std::filesystem;

struct FreeDocument {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

const fs::path helpFolder = fs::path(vlclientui::sourceFolder()) / "help";
const std::vector<std::string> pageNames = {
    "Adding_an_Image_Service",       "Connections",      "Changing_service_properties",
    "Exporting_Image_Services",      "Using_the_viewer", "Using_the_viewpoint_functionality",
    "Viewing_image_service_metadata"};

Document parse(const fs::path& path) {
  return Document(xmlReadFile(path.c_str(), "UTF-8", XML_PARSE_NONET | XML_PARSE_NOWARNING));
}

/// Values of the attribute wherever it stands on an element of that name.
std::vector<std::string> attributesOf(const Document& document, const std::string& element,
                                      const std::string& attribute) {
  std::vector<std::string> values;
  const std::function<void(const xmlNode*)> visit = [&](const xmlNode* node) {
    for (; node != nullptr; node = node->next) {
      if (node->type != XML_ELEMENT_NODE) continue;
      if (element == reinterpret_cast<const char*>(node->name)) {
        xmlChar* value = xmlGetProp(node, reinterpret_cast<const xmlChar*>(attribute.c_str()));
        if (value != nullptr) values.emplace_back(reinterpret_cast<const char*>(value));
        xmlFree(value);
      }
      visit(node->children);
    }
  };
  visit(xmlDocGetRootElement(document.get()));
  return values;
}

class HelpPages : public testing::TestWithParam<std::string> {
 protected:
  fs::path path = helpFolder / (GetParam() + ".htm");
};

TEST_P(HelpPages, ExistUnderTheNamesThatTheWindowsAskFor) { EXPECT_TRUE(fs::is_regular_file(path)); }

TEST_P(HelpPages, AreWellFormed) { EXPECT_TRUE(parse(path)); }

TEST_P(HelpPages, HaveLinksPicturesAndStylesThatExist) {
  const Document document = parse(path);
  ASSERT_TRUE(document);
  std::vector<std::string> targets = attributesOf(document, "a", "href");
  for (const auto& style : attributesOf(document, "link", "href")) targets.push_back(style);
  for (const auto& picture : attributesOf(document, "img", "src")) targets.push_back(picture);
  EXPECT_GE(targets.size(), 4U);
  for (const auto& target : targets) EXPECT_TRUE(fs::exists(helpFolder / target)) << target;
}

TEST_P(HelpPages, LinkToEachOther) {
  const Document document = parse(path);
  ASSERT_TRUE(document);
  const auto links = attributesOf(document, "a", "href");
  for (const auto& other : pageNames) {
    if (other == GetParam()) continue;
    EXPECT_NE(std::find(links.begin(), links.end(), other + ".htm"), links.end()) << other;
  }
}

INSTANTIATE_TEST_SUITE_P(EachPage, HelpPages, testing::ValuesIn(pageNames),
                         [](const auto& information) { return information.param; });

}  // namespace
