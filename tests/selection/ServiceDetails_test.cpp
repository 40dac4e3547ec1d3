#include "selection/ServiceDetails.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "selection/XmlForTests.h"
#include "support/SelectionFixture.h"

namespace vlclientui {

void PrintTo(const ServiceTexts& texts, std::ostream* out) {
  *out << "{" << texts.geographicRegion << ", " << texts.pixelUnit << ", " << texts.pixelSource << ", "
       << texts.colorSpace << ", " << texts.pixelType << ", " << texts.bitDepth << ", " << texts.bands << "}";
}

namespace {

using test::parsed;
using test::serverInfo;

const std::string fullInfo =
    "<ImageServiceInfo><Name>n</Name><KeyDetails><GeographicRegion>Alps</GeographicRegion>"
    "<PixelUnit>m</PixelUnit><PixelSource>scan</PixelSource></KeyDetails><ColorSpace>1</ColorSpace>"
    "<PixelType>UInt16</PixelType><BitDepth>12</BitDepth><NBands>3</NBands></ImageServiceInfo>";
const ServiceTexts fullTexts{"Alps", "m", "scan", "RGB", "UInt16", "12", "3"};
const ServiceTexts ofRowBefore{"r", "u", "s", "c", "t", "d", "b"};
const std::string bareInfo = "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>";

ServiceTexts read(const std::string& xml, const std::string& leaf, const std::string& whole,
                  ServiceTexts texts = {}) {
  const auto document = parsed(xml);
  ServiceDetails(*document).read(leaf, whole, texts);
  return texts;
}

TEST(ColorSpaceName, KnowsItsNineCodesExactly) {
  EXPECT_EQ(ColorSpaceName("0"), "Grayscale");
  EXPECT_EQ(ColorSpaceName("1"), "RGB");
  EXPECT_EQ(ColorSpaceName("2"), "CMYK");
  EXPECT_EQ(ColorSpaceName("3"), "YCbCr");
  EXPECT_EQ(ColorSpaceName("4"), "YUV");
  EXPECT_EQ(ColorSpaceName("5"), "LHS");
  EXPECT_EQ(ColorSpaceName("6"), "YCCK");
  EXPECT_EQ(ColorSpaceName("7"), "Palette");
  EXPECT_EQ(ColorSpaceName("255"), "Unknown");
}

TEST(ColorSpaceName, AnyOtherCodeHasNoLabel) {
  for (const char* code : {"8", "", "01", "1.0", " 1", "254", "256", "RGB", "-1"}) {
    EXPECT_EQ(ColorSpaceName(code), "") << code;
  }
}

TEST(ServiceDetails, ReadsTheSevenTextsOfTheMatch) {
  EXPECT_EQ(read(serverInfo({{"A/B", fullInfo}}), "B", "A/B"), fullTexts);
}

TEST(ServiceDetails, MatchesTheLeafNameToo) {
  EXPECT_EQ(read(serverInfo({{"B", fullInfo}}), "B", "A/B"), fullTexts);
}

TEST(ServiceDetails, MatchesExactlyCaseIncluded) {
  EXPECT_EQ(read(serverInfo({{"a/b", fullInfo}}), "B", "A/B", ofRowBefore), ServiceTexts{});
}

TEST(ServiceDetails, TurnsBackslashesOfTheDocumentsNames) {
  EXPECT_EQ(read(serverInfo({{"A\\B", fullInfo}}), "B", "A/B"), fullTexts);
}

TEST(ServiceDetails, TakesTheFirstInDocumentOrderByWholeOrLeafName) {
  const std::string other = "<ImageServiceInfo><Name>n</Name><NBands>9</NBands></ImageServiceInfo>";
  EXPECT_EQ(read(serverInfo({{"B", other}, {"A/B", fullInfo}}), "B", "A/B").bands, "9");
  EXPECT_EQ(read(serverInfo({{"A/B", other}, {"B", fullInfo}}), "B", "A/B").bands, "9");
}

TEST(ServiceDetails, AMatchAtTheFirstServiceKeepsTheTextsThatItLacks) {
  EXPECT_EQ(read(serverInfo({{"A", bareInfo}, {"B", fullInfo}}), "A", "", ofRowBefore), ofRowBefore);
}

TEST(ServiceDetails, AMatchFurtherDownStartsFromEmptyTexts) {
  EXPECT_EQ(read(serverInfo({{"B", fullInfo}, {"A", bareInfo}}), "A", "x", ofRowBefore), ServiceTexts{});
}

TEST(ServiceDetails, NoMatchLeavesEmptyTexts) {
  EXPECT_EQ(read(serverInfo({{"B", fullInfo}}), "A", "x/A", ofRowBefore), ServiceTexts{});
}

TEST(ServiceDetails, ServicesWithoutInfoNameClearNothing) {
  const std::string nameless = "<ImageServiceInfo><NBands>7</NBands></ImageServiceInfo>";
  const auto xml = serverInfo({{"X", nameless}, {"Y", ""}, {"A", bareInfo}});
  EXPECT_EQ(read(xml, "A", "", ofRowBefore), ofRowBefore);
  EXPECT_EQ(read(serverInfo({{"X", nameless}}), "X", "X", ofRowBefore), ofRowBefore)
      << "a list without a service that counts clears nothing and matches nothing";
}

TEST(ServiceDetails, AnUnknownColorCodeEmptiesTheCellOfTheRowBefore) {
  const std::string info = "<ImageServiceInfo><Name>n</Name><ColorSpace>8</ColorSpace></ImageServiceInfo>";
  EXPECT_EQ(read(serverInfo({{"A", info}}), "A", "", ofRowBefore).colorSpace, "");
}

TEST(ServiceDetails, PixelTypeIsShownAsSent) {
  const std::string info =
      "<ImageServiceInfo><Name>n</Name><PixelType>float 32!</PixelType></ImageServiceInfo>";
  EXPECT_EQ(read(serverInfo({{"A", info}}), "A", "").pixelType, "float 32!");
}

TEST(ServiceDetails, ADocumentThatDoesNotParseClearsNothing) {
  EXPECT_EQ(read("<Vorlane><Server>", "A", "A", ofRowBefore), ofRowBefore);
  EXPECT_EQ(read("", "A", "A", ofRowBefore), ofRowBefore);
  EXPECT_EQ(read("<Other/>", "A", "A", ofRowBefore), ofRowBefore);
}

/// The look-up for one row, run literally: every call parses the document anew, and every service once more
/// by itself.
void readLiterally(const std::string& xml, const std::string& leaf, const std::string& whole,
                   ServiceTexts& texts) {
  const auto document = parsed(xml);
  const XmlNodePtr providers = document->selectSingleNode("//Vorlane/Server/Info/Detailed/ServiceProviders");
  if (!providers) return;
  for (std::size_t index = 0; index < providers->childNodes().size(); ++index) {
    const XmlNodePtr services =
        document->selectSingleNode("//ServiceProvider[" + std::to_string(index) + "]/Services");
    if (!services) continue;
    for (const XmlNodePtr& node : services->childNodes()) {
      const auto service = parsed(node->xml());
      if (!service->selectSingleNode("//Service/ImageServiceInfo/Name")) continue;
      std::string name;
      if (const auto found = service->selectSingleNode("//Service/Name")) name = found->text();
      std::ranges::replace(name, '\\', '/');
      if (name != whole && name != leaf) {
        texts = {};
        continue;
      }
      const auto take = [&service](const char* path, std::string& text) {
        if (const auto found = service->selectSingleNode(path)) text = found->text();
      };
      take("//Service/ImageServiceInfo/KeyDetails/GeographicRegion", texts.geographicRegion);
      take("//Service/ImageServiceInfo/KeyDetails/PixelUnit", texts.pixelUnit);
      take("//Service/ImageServiceInfo/KeyDetails/PixelSource", texts.pixelSource);
      std::string code;
      take("//Service/ImageServiceInfo/ColorSpace", code);
      if (service->selectSingleNode("//Service/ImageServiceInfo/ColorSpace")) {
        texts.colorSpace = ColorSpaceName(code);
      }
      take("//Service/ImageServiceInfo/PixelType", texts.pixelType);
      take("//Service/ImageServiceInfo/BitDepth", texts.bitDepth);
      take("//Service/ImageServiceInfo/NBands", texts.bands);
      return;
    }
  }
}

/// Documents in which every element may be missing, doubled or in an unexpected place.
class RandomServerInfo {
 public:
  explicit RandomServerInfo(unsigned seed) : random_(seed) {}

  std::string document() {
    std::string xml = "<Vorlane><Server><Info><Detailed>";
    if (oneIn(12)) xml += "<Archive><ServiceProvider>" + services() + "</ServiceProvider></Archive>";
    xml += "<ServiceProviders>";
    for (auto count = random_() % 4; count > 0; --count) xml += provider();
    return xml + "</ServiceProviders></Detailed></Info></Server></Vorlane>";
  }

  std::string name() { return pick({"a", "b", "A", "f/a", "f\\a", "f/b", "f/g/a", "", " a ", "F/a"}); }
  bool oneIn(unsigned n) { return random_() % n == 0; }

 private:
  std::string pick(const std::vector<std::string>& from) { return from[random_() % from.size()]; }

  std::string provider() {
    if (oneIn(10)) return "<!-- none -->";
    const std::string name = oneIn(8) ? "Other" : "ServiceProvider";
    return "<" + name + ">" + (oneIn(8) ? "" : services()) + "</" + name + ">";
  }

  std::string services() {
    std::string xml = "<Services>";
    for (auto count = random_() % 6; count > 0; --count) xml += service();
    return xml + "</Services>";
  }

  std::string service() {
    if (oneIn(15)) return "<!-- gap -->";
    const std::string element = oneIn(15) ? "Group" : "Service";
    std::string xml = "<" + element + ">";
    if (oneIn(20)) xml += service();
    if (!oneIn(12)) xml += "<Name>" + name() + "</Name>";
    if (!oneIn(12)) xml += info();
    return xml + "</" + element + ">";
  }

  std::string info() {
    std::string xml = "<ImageServiceInfo>";
    if (!oneIn(5)) xml += "<Name>n</Name>";
    if (!oneIn(4)) xml += keyDetails();
    for (const char* child : {"ColorSpace", "PixelType", "BitDepth", "NBands"}) xml += maybe(child);
    return xml + "</ImageServiceInfo>";
  }

  std::string keyDetails() {
    return "<KeyDetails>" + maybe("GeographicRegion") + maybe("PixelUnit") + maybe("PixelSource") +
           "</KeyDetails>";
  }

  std::string maybe(const std::string& element) {
    if (oneIn(3)) return {};
    return "<" + element + ">" + pick({"0", "1", "7", "8", "255", "", "x"}) + "</" + element + ">";
  }

  std::mt19937 random_;
};

std::string leafOf(const std::string& name) {
  const auto slash = name.rfind('/');
  return slash == std::string::npos ? name : name.substr(slash + 1);
}

TEST(ServiceDetails, RowForRowEqualTheSlowLookUpOnRandomDocuments) {
  RandomServerInfo random(24);
  std::size_t filled = 0;
  std::size_t carried = 0;
  for (int run = 0; run < 500 && !HasFailure(); ++run) {
    const std::string xml = random.document();
    const auto document = parsed(xml);
    ASSERT_TRUE(document->documentElement()) << xml;
    const ServiceDetails details(*document);
    ServiceTexts texts;
    ServiceTexts expected;
    for (int row = 0; row < 8; ++row) {
      const std::string whole = random.oneIn(3) ? "" : random.name();
      const std::string leaf = whole.empty() ? random.name() : leafOf(whole);
      const ServiceTexts before = texts;
      details.read(leaf, whole, texts);
      readLiterally(xml, leaf, whole, expected);
      ASSERT_EQ(texts, expected) << "row '" << leaf << "' of '" << whole << "' in " << xml;
      if (texts != ServiceTexts{}) ++filled;
      if (texts == before && texts != ServiceTexts{}) ++carried;
    }
  }
  EXPECT_GT(filled, 500U) << "the documents have to hold matches";
  EXPECT_GT(carried, 20U) << "and rows that keep texts of the row before";
}

}  // namespace
}  // namespace vlclientui
