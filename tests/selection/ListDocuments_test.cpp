#include "selection/ListDocuments.h"

#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "documents/ParsedDocument.h"
#include "selection/XmlForTests.h"
#include "support/SelectionFixture.h"

namespace vlclientui {
namespace {

using test::parsed;
using test::serverInfo;
using test::serverInfoOf;
using test::xmlService;
using testing::ElementsAre;
using testing::Pair;

const std::string infoDocument =
    "<ImageServiceInfo><Name>n</Name><KeyDetails><GeographicRegion>Alps</GeographicRegion>"
    "<PixelUnit>m</PixelUnit><PixelSource>scan</PixelSource></KeyDetails><ColorSpace>7</ColorSpace>"
    "<PixelType>Byte</PixelType><BitDepth>8</BitDepth><NBands>1</NBands></ImageServiceInfo>";

std::string rows(const std::string& info, const std::vector<std::string>& folders,
                 const std::vector<std::string>& files, const std::vector<std::string>& wholeNames = {}) {
  const ServiceDetails details(*parsedDocument(xmlService(), info));
  return BuildListValues(
      xmlService(), [&details]() -> const ServiceDetails& { return details; }, folders, files, wholeNames);
}

std::vector<XmlNodePtr> parsedRows(const XmlDocument& values) {
  return values.documentElement()->childNodes();
}

TEST(XmlNameFromLabel, PrefixesADigitInFront) {
  EXPECT_EQ(XmlNameFromLabel("9 West(1)"), "_9West_1_");
  EXPECT_EQ(XmlNameFromLabel("0"), "_0");
  EXPECT_EQ(XmlNameFromLabel("a9"), "a9");
}

TEST(XmlNameFromLabel, DeletesBlanksAndReplacesBracketsAnglesAndPlus) {
  EXPECT_EQ(XmlNameFromLabel("a [b] (c) <d> \u2039e+"), "a_b__c__d__e_");
  EXPECT_EQ(XmlNameFromLabel("   "), "");
}

TEST(XmlNameFromLabel, LooksAtTheFirstCharacterBeforeBlanksGo) { EXPECT_EQ(XmlNameFromLabel(" 9"), "9"); }

TEST(XmlNameFromLabel, LeavesOtherIllegalCharactersAndOtherLetters) {
  EXPECT_EQ(XmlNameFromLabel("a&b/c\u203A"), "a&b/c\u203A");
  EXPECT_EQ(XmlNameFromLabel("Z\u00FCrich"), "Z\u00FCrich");
}

TEST(ListFields, NameTheColumnsInTheOrderOfTheCells) {
  EXPECT_STREQ(listFields,
               "<list_fields><Name width='15'/><Geographic_Region width='8'/><Pixel_Source width='8'/>"
               "<Pixel_Unit width='8'/><Color_Space width='8'/><Pixel_Type width='8'/><Bit_Depth width='8'/>"
               "<Bands width='5'/></list_fields>");
}

TEST(MessageRows, CarryOneRowWithoutIcon) {
  EXPECT_STREQ(serverNotFoundValues,
               "<list_values><Europe icon=\"\" displayName=\"(Server not found)\"/></list_values>");
  EXPECT_STREQ(emptyServerValues, "<list_values><Europe icon=\"\" displayName=\"(empty)\"/></list_values>");
}

TEST(BuildListValues, WritesFoldersFirstThenServicesWithTheirTextsInOrder) {
  EXPECT_EQ(rows(serverInfo({{"9 West(1)", infoDocument}}), {"My Folder"}, {"9 West(1)"}, {""}),
            "<list_values><MyFolder icon=\"fldr\" displayName=\"My Folder\"/>"
            "<_9West_1_ icon=\"VLSERVICE\" displayName=\"9 West(1)\" Geographic_Region=\"Alps\" "
            "Pixel_Unit=\"m\" Pixel_Source=\"scan\" Color_Space=\"Palette\" Pixel_Type=\"Byte\" "
            "Bit_Depth=\"8\" Bands=\"1\"/></list_values>");
}

TEST(BuildListValues, LeavesOutTheParentEntryAndFoldersWithoutName) {
  EXPECT_EQ(rows("", {"..", "", "A"}, {}), "<list_values><A icon=\"fldr\" displayName=\"A\"/></list_values>");
}

TEST(BuildListValues, AServiceWithoutNameCannotBecomeARow) {
  EXPECT_THROW(static_cast<void>(rows(serverInfoOf({"A/"}), {}, {""}, {"A/"})), RuntimeFailure);
}

TEST(BuildListValues, ALabelThatCannotBecomeAnElementNameIsAFailure) {
  EXPECT_THROW(static_cast<void>(rows("", {"a&b"}, {})), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(rows(serverInfoOf({"a,b"}), {}, {"a,b"}, {""})), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(rows("", {" 9"}, {})), RuntimeFailure);
}

TEST(BuildListValues, KeepsTheOrderGiven) {
  const auto values = parsed(rows(serverInfoOf({"z", "y"}), {"n", "m"}, {"z", "y"}, {"", ""}));
  std::vector<std::string> names;
  for (const auto& row : parsedRows(*values)) names.push_back(row->name());
  EXPECT_THAT(names, ElementsAre("n", "m", "z", "y"));
}

TEST(BuildListValues, EscapesTextsForAttributes) {
  const std::string info =
      "<ImageServiceInfo><Name>n</Name><PixelType>a &lt; \"b\" &amp; c</PixelType></ImageServiceInfo>";
  const auto values = parsed(rows(serverInfo({{"A", info}}), {}, {"A"}, {""}));
  EXPECT_EQ(parsedRows(*values).at(0)->getNamedItem("Pixel_Type"), "a < \"b\" & c");
}

TEST(BuildListValues, ShowsNamesInAnyScript) {
  const auto values = parsed(rows(serverInfo({{"Z\u00FCrich \u5730\u56F3", infoDocument}}), {"\u00C5land"},
                                  {"Z\u00FCrich \u5730\u56F3"}, {""}));
  const auto shown = parsedRows(*values);
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0]->getNamedItem("displayName"), "\u00C5land");
  EXPECT_EQ(shown[1]->name(), "Z\u00FCrich\u5730\u56F3");
  EXPECT_EQ(shown[1]->getNamedItem("Geographic_Region"), "Alps");
}

TEST(BuildListValues, ARowTakesTextsOfTheRowBeforeWhenTheFirstServiceLacksThem) {
  const std::string bare = "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>";
  const auto values = parsed(rows(serverInfo({{"A", bare}, {"B", infoDocument}}), {}, {"B", "A"}, {"", ""}));
  EXPECT_EQ(parsedRows(*values).at(1)->getNamedItem("Geographic_Region"), "Alps");
}

TEST(BuildListValues, TextsStartEmptyAtEachDisplay) {
  const std::string bare = "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>";
  const std::string info = serverInfo({{"A", bare}, {"B", infoDocument}});
  static_cast<void>(rows(info, {}, {"B"}, {""}));
  const auto values = parsed(rows(info, {}, {"A"}, {""}));
  EXPECT_EQ(parsedRows(*values).at(0)->getNamedItem("Geographic_Region"), "");
}

TEST(BuildListValues, LooksUpRowsThatAnExchangePutOutOfStepByTheirLeafName) {
  const auto values =
      parsed(rows(serverInfo({{"b", infoDocument}, {"F/x", "<ImageServiceInfo><Name/></ImageServiceInfo>"}}),
                  {}, {"b", "x"}, {"F/x", "F/b"}));
  // "b" finds itself by its leaf; "x" finds nothing, since its leaf is not a whole name and its whole name
  // is that of the other row.
  EXPECT_EQ(parsedRows(*values).at(0)->getNamedItem("Bands"), "1");
  EXPECT_EQ(parsedRows(*values).at(1)->getNamedItem("Bands"), "");
}

TEST(BuildListValues, WithoutRowsIsAnEmptyList) {
  EXPECT_EQ(rows("", {}, {}), "<list_values></list_values>");
}

TEST(BuildListValues, AServerInfoThatDoesNotParseLeavesTheCellsEmpty) {
  EXPECT_THAT(parsedRows(*parsed(rows("<broken", {}, {"A"}, {""}))).at(0)->attributes(),
              ElementsAre(Pair("icon", "VLSERVICE"), Pair("displayName", "A"), Pair("Geographic_Region", ""),
                          Pair("Pixel_Unit", ""), Pair("Pixel_Source", ""), Pair("Color_Space", ""),
                          Pair("Pixel_Type", ""), Pair("Bit_Depth", ""), Pair("Bands", "")));
}

}  // namespace
}  // namespace vlclientui
