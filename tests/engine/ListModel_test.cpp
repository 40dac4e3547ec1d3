#include "engine/ListModel.h"

#include <gtest/gtest.h>

#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

ListModel modelOf(const std::string& fields, const std::string& values) {
  return {*parseListFields(*testXml(), fields), ListRows::parse(*testXml(), values)};
}

TEST(ListModel, ColumnsStandInTheOrderOfTheDocumentWithTheirWidths) {
  const auto columns =
      parseListFields(*testXml(), "<list_fields><Name width='15'/><Pixel_Source width='8.5'/></list_fields>");
  ASSERT_TRUE(columns);
  EXPECT_EQ(*columns, (std::vector<ListColumn>{{"Name", "Name", 15}, {"Pixel_Source", "Pixel Source", 8.5}}));
}

TEST(ListModel, AColumnTitleShowsUnderscoresAsBlanks) {
  const auto columns = parseListFields(*testXml(), "<list_fields><A_b__c width='1'/></list_fields>");
  ASSERT_TRUE(columns);
  EXPECT_EQ(columns->front().title, "A b  c");
}

TEST(ListModel, AColumnWithoutAWidthIsAsWideAsItsEquals) {
  const auto columns = parseListFields(*testXml(), "<list_fields><A/><B/></list_fields>");
  ASSERT_TRUE(columns);
  EXPECT_GT(columns->at(0).width, 0);
  EXPECT_EQ(columns->at(0).width, columns->at(1).width);
}

TEST(ListModel, FieldsThatAreNoListFieldsDocumentAreRefused) {
  for (const auto* text :
       {"", "  ", "no xml", "<list_fields>", "<list_values/>", "<list_fields><A width=''/></list_fields>",
        "<list_fields><A width='wide'/></list_fields>", "<list_fields><A width='8px'/></list_fields>",
        "<list_fields><A width='0'/></list_fields>", "<list_fields><A width='-3'/></list_fields>",
        "<list_fields><A width='inf'/></list_fields>", "<list_fields><A width='nan'/></list_fields>"}) {
    EXPECT_FALSE(parseListFields(*testXml(), text)) << text;
  }
}

TEST(ListModel, ValuesThatAreNoListValuesDocumentAreRefused) {
  for (const auto* text :
       {"", "no xml", "<list_values>", "<list_fields/>", "<list_values><a/></list_value>"}) {
    EXPECT_FALSE(ListRows::parse(*testXml(), text)) << text;
  }
}

TEST(ListModel, AnEmptyListValuesDocumentIsAListWithoutRows) {
  const auto rows = ListRows::parse(*testXml(), "<list_values/>");
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->count(), 0U);
}

TEST(ListModel, TheFirstColumnShowsTheDisplayNameAndTheOthersTheirAttributes) {
  const auto model =
      modelOf(listFields,
              "<list_values><Row icon='VLSERVICE' displayName='9 West(1)' Name='other' Bands='6' "
              "Geographic_Region='Alps'/></list_values>");
  ASSERT_EQ(model.rowCount(), 1U);
  EXPECT_EQ(model.cell(0, 0), "9 West(1)");
  EXPECT_EQ(model.cell(0, 1), "Alps");
  EXPECT_EQ(model.cell(0, 2), "6");
}

TEST(ListModel, ARowWithoutAnAttributeHasAnEmptyCell) {
  const auto model = modelOf(
      listFields,
      "<list_values><a icon='' displayName='A' Bands='3'/><b icon='' displayName='B'/></list_values>");
  EXPECT_EQ(model.cell(0, 1), "");
  EXPECT_EQ(model.cell(0, 2), "3");
  EXPECT_EQ(model.cell(1, 2), "");
}

TEST(ListModel, TheIconTellsFoldersServicesAndMessagesApart) {
  const auto rows = ListRows::parse(*testXml(),
                                    "<list_values><a icon='fldr' displayName='A'/><b icon='VLSERVICE' "
                                    "displayName='B'/><c icon='' displayName='(empty)'/><d displayName='D'/>"
                                    "<e icon='FLDR' displayName='E'/></list_values>");
  ASSERT_TRUE(rows);
  ASSERT_EQ(rows->count(), 5U);
  EXPECT_EQ(rows->icon(0), RowIcon::Folder);
  EXPECT_EQ(rows->icon(1), RowIcon::Service);
  EXPECT_EQ(rows->icon(2), RowIcon::Message);
  EXPECT_EQ(rows->icon(3), RowIcon::Message);
  EXPECT_EQ(rows->icon(4), RowIcon::Message);
}

TEST(ListModel, ARowWithoutADisplayNameShowsAnEmptyOne) {
  const auto rows = ListRows::parse(*testXml(), "<list_values><a icon='fldr' Bands='1'/></list_values>");
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->displayName(0), "");
}

TEST(ListModel, NamesKeepTheirMarkupCharactersAndLetters) {
  const auto rows = ListRows::parse(
      *testXml(),
      "<list_values><a icon='' displayName='&lt;Z\xC3\xBCrich &amp; Gen\xC3\xA8ve&gt;'/></list_values>");
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->displayName(0), "<Z\xC3\xBCrich & Gen\xC3\xA8ve>");
}

TEST(ListModel, CommentsBetweenRowsAreNoRows) {
  const auto rows =
      ListRows::parse(*testXml(), "<list_values><!-- none --><a displayName='A'/></list_values>");
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->count(), 1U);
}

TEST(ListModel, WithoutColumnsOneColumnShowsTheNames) {
  const ListModel model({}, ListRows::parse(*testXml(), listValues({"A"})));
  ASSERT_EQ(model.columnCount(), 1U);
  EXPECT_EQ(model.columns().front().title, "Name");
  EXPECT_EQ(model.cell(0, 0), "A");
}

TEST(ListModel, WithoutRowsTheColumnsStandAlone) {
  const ListModel model(*parseListFields(*testXml(), listFields), nullptr);
  EXPECT_EQ(model.columnCount(), 3U);
  EXPECT_EQ(model.rowCount(), 0U);
}

TEST(ListModel, HoldsAHundredThousandRows) {
  std::vector<std::string> names;
  for (int i = 0; i < 100'000; ++i) names.push_back("Service " + std::to_string(i));
  const auto model = modelOf(listFields, listValues(names));
  ASSERT_EQ(model.rowCount(), names.size());
  EXPECT_EQ(model.cell(0, 0), "Service 0");
  EXPECT_EQ(model.cell(99'999, 0), "Service 99999");
  EXPECT_EQ(model.icon(99'999), RowIcon::Service);
}

}  // namespace
}  // namespace vlclientui::engine
