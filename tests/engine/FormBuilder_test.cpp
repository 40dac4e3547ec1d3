#include "engine/FormBuilder.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

FormModel build(const std::string& attributes, const std::string& form, const std::string& data,
                PageMode mode = PageMode::Editable) {
  return buildForm(*testXml(), {attributes, form, data, "//"}, mode);
}

std::string failureOf(const std::string& attributes, const std::string& form, const std::string& data) {
  try {
    (void)build(attributes, form, data);
  } catch (const RuntimeFailure& failure) {
    return failure.description();
  }
  return "";
}

std::vector<std::string> labelsOf(const FormGroup& group) {
  std::vector<std::string> labels;
  for (const auto& field : group.fields) labels.push_back(field.label);
  return labels;
}

using Labels = std::vector<std::string>;

TEST(FormBuilder, FieldsTakeTheirValuesFromTheDataByName) {
  const auto form = build("", "<V><A/><B/></V>", "<V><B>two</B><A> one </A></V>");
  ASSERT_EQ(form.groups.size(), 1U);
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"A", "B"}));
  EXPECT_EQ(form.findField("A")->value, "one");
  EXPECT_EQ(form.findField("B")->value, "two");
}

TEST(FormBuilder, ElementsWithChildrenAreGroupsWithCaptions) {
  const auto form = build("", "<V><In><A/></In><B/><Out Out_LABEL_='Outside'><C/></Out></V>",
                          "<V><In><A/></In><B/><Out><C/></Out></V>");
  ASSERT_EQ(form.groups.size(), 3U);
  EXPECT_EQ(form.groups[0].caption, "");
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"B"}));
  EXPECT_EQ(form.groups[1].caption, "In");
  EXPECT_EQ(form.groups[2].caption, "Outside");
  EXPECT_EQ(form.groups[2].fields[0].path, "V/Out/C");
}

TEST(FormBuilder, TheRootHasACaptionOnlyWhenItIsGiven) {
  EXPECT_EQ(build("", "<V V_LABEL_='Page'><A/></V>", "<V><A/></V>").groups[0].caption, "Page");
  EXPECT_EQ(build("", "<V><A/></V>", "<V><A/></V>").groups[0].caption, "");
}

TEST(FormBuilder, WordsOfBothDefinitionsDescribeAField) {
  const auto form = build("<V><A A_KIND_='number' A_UNIT_='m'/></V>",
                          "<V><A A_LABEL_='Height' A_HELP_='Above sea'/></V>", "<V><A>12.5</A></V>");
  const auto& field = *form.findField("A");
  EXPECT_EQ(field.kind, FieldKind::Number);
  EXPECT_EQ(field.unit, "m");
  EXPECT_EQ(field.label, "Height");
  EXPECT_EQ(field.help, "Above sea");
  EXPECT_EQ(field.value, "12.5");
  EXPECT_FALSE(field.readOnly);
}

TEST(FormBuilder, ACodeShowsItsLabelAndAnUnknownCodeItself) {
  const std::string attributes = "<V><A A_LIST_='0=Grayscale;1=RGB'/></V>";
  EXPECT_EQ(build(attributes, "", "<V><A>1</A></V>").findField("A")->value, "RGB");
  EXPECT_EQ(build(attributes, "", "<V><A>8</A></V>").findField("A")->value, "8");
  EXPECT_EQ(build(attributes, "", "<V><A>1</A></V>").findField("A")->allowedValues,
            (Labels{"Grayscale", "RGB"}));
}

TEST(FormBuilder, TrueAndFalseShowAsYesAndNo) {
  const std::string attributes = "<V><A A_KIND_='yesno'/></V>";
  EXPECT_EQ(build(attributes, "", "<V><A>TRUE</A></V>").findField("A")->value, "Yes");
  EXPECT_EQ(build(attributes, "", "<V><A>False</A></V>").findField("A")->value, "No");
  EXPECT_EQ(build(attributes, "", "<V><A>maybe</A></V>").findField("A")->value, "maybe");
}

TEST(FormBuilder, AReadOnlyWordInEitherDefinitionMakesTheFieldReadOnly) {
  EXPECT_TRUE(build("<V><A A_READONLY_='True'/></V>", "<V><A/></V>", "<V><A/></V>").findField("A")->readOnly);
  EXPECT_TRUE(build("<V><A/></V>", "<V><A A_READONLY_='true'/></V>", "<V><A/></V>").findField("A")->readOnly);
  EXPECT_FALSE(
      build("<V><A/></V>", "<V><A A_READONLY_='False'/></V>", "<V><A/></V>").findField("A")->readOnly);
}

TEST(FormBuilder, AReadOnlyGroupMakesAllFieldsBelowReadOnly) {
  const auto form = build("", "<V><Srs Srs_READONLY_='True'><Prj/><In><Id/></In></Srs><B/></V>",
                          "<V><Srs><Prj/><In><Id/></In></Srs><B/></V>");
  EXPECT_TRUE(form.findField("Prj")->readOnly);
  EXPECT_TRUE(form.findField("Id")->readOnly);
  EXPECT_FALSE(form.findField("B")->readOnly);
}

TEST(FormBuilder, OnAReadOnlyPageEveryFieldIsReadOnly) {
  EXPECT_TRUE(build("", "<V><A/></V>", "<V><A/></V>", PageMode::ReadOnly).findField("A")->readOnly);
}

TEST(FormBuilder, AReadOnlyFieldWithoutDataIsLeftOutAndItsEmptyGroupToo) {
  const auto form = build("<V><A>0</A><G><B/></G><C/></V>", "", "<V><C/></V>", PageMode::ReadOnly);
  ASSERT_EQ(form.groups.size(), 1U);
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"C"}));
}

TEST(FormBuilder, AnEditableFieldWithoutDataShowsTheTemplatesText) {
  const auto form = build("<V><A>start</A></V>", "<V><A/><B/></V>", "<V/>");
  EXPECT_EQ(form.findField("A")->value, "start");
  EXPECT_EQ(form.findField("B")->value, "");
}

TEST(FormBuilder, AnEmptyElementOfTheDataStaysEmptyWhateverTheTemplateSays) {
  EXPECT_EQ(build("<V><A>start</A></V>", "", "<V><A/></V>").findField("A")->value, "");
}

TEST(FormBuilder, ATabHoldsItsGroupsAndBearsTheCaption) {
  const auto form = build("",
                          "<V><A/><T T_TAB_='True' T_LABEL_='&amp;Tab'><B/><G><C/></G></T><E "
                          "E_TAB_='True'><X X_READONLY_='True'/></E>"
                          "<U U_TAB_='True'><D/></U></V>",
                          "<V/>");
  ASSERT_EQ(form.tabs.size(), 2U);
  EXPECT_EQ(form.tabs[0], (Label{"Tab", 0}));
  EXPECT_EQ(form.tabs[1].text, "U");
  ASSERT_EQ(form.groups.size(), 4U);
  EXPECT_EQ(form.groups[0].tab, std::nullopt);
  EXPECT_EQ(form.groups[1].tab, 0U);
  EXPECT_EQ(form.groups[1].caption, "");
  EXPECT_EQ(form.groups[2].tab, 0U);
  EXPECT_EQ(form.groups[2].caption, "G");
  EXPECT_EQ(form.groups[3].tab, 1U);
}

TEST(FormBuilder, TheHelpFileIsTheFirstOfTheFirstBlockOfTheFirstDocument) {
  const std::string twice =
      "<V><X_DEF><HELP_Path>one</HELP_Path><HELP_Path>two</HELP_Path></X_DEF><X_DEF/><A/></V>";
  EXPECT_EQ(build(twice, "<V><A/></V>", "<V><A/></V>").helpFile, "one");
  EXPECT_EQ(build("<V><A/></V>", "<V><A/></V>", twice).helpFile, "one");
  EXPECT_EQ(build("<V><A/></V>", "", "<V><A/></V>").helpFile, "");
}

TEST(FormBuilder, APageOfHelpIsHandedDownUntilAnotherIsGiven) {
  const auto form = build("<V V_PAGE_='P'><A/><G G_PAGE_='Q'><B/><C C_PAGE_='R'/></G></V>", "", "<V/>");
  EXPECT_EQ(form.helpPage, "P");
  EXPECT_EQ(form.findField("A")->helpPage, "P");
  EXPECT_EQ(form.findField("B")->helpPage, "Q");
  EXPECT_EQ(form.findField("C")->helpPage, "R");
}

TEST(FormBuilder, AFieldWhoseDataHoldElementsIsReadOnly) {
  EXPECT_TRUE(build("", "<V><A/></V>", "<V><A>x<B/></A></V>").findField("A")->readOnly);
}

TEST(FormBuilder, AButtonNeedsNoDataAndIsNotOnAReadOnlyPage) {
  const std::string form = "<V><A/><B B_KIND_='button'/></V>";
  EXPECT_TRUE(build("", form, "<V><A/></V>").findField("B"));
  EXPECT_FALSE(build("", form, "<V><A/><B/></V>", PageMode::ReadOnly).findField("B"));
}

TEST(FormBuilder, TheKeyOfALabelIsNoPartOfItsText) {
  const auto form = build("", "<V><A A_LABEL_='R &amp;&amp; &amp;Data &amp; more'/></V>", "<V/>");
  EXPECT_EQ(form.findField("A")->label, "R & Data & more");
  EXPECT_EQ(form.findField("A")->labelKey, 4U);
}

TEST(FormBuilder, AnEndOfARangeThatIsNoNumberIsAFailure) {
  EXPECT_NE(failureOf("", "<V><A A_MIN_='low'/></V>", "<V/>"), "");
}

TEST(FormBuilder, HiddenElementsDoNotShow) {
  const auto form =
      build("", "<V><A A_HIDDEN_='True'/><G G_HIDDEN_='True'><B/></G><C/></V>", "<V><A/><G><B/></G><C/></V>");
  ASSERT_EQ(form.groups.size(), 1U);
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"C"}));
}

TEST(FormBuilder, AGroupOfTheFormAloneTakesFieldsOfItsParent) {
  const auto form = build("<V><A A_UNIT_='m'/></V>", "<V><B/><Sizes Sizes_GROUP_='True'><A/></Sizes></V>",
                          "<V><A>3</A><B>4</B></V>");
  ASSERT_EQ(form.groups.size(), 2U);
  EXPECT_EQ(form.groups[1].caption, "Sizes");
  EXPECT_EQ(form.groups[1].fields[0].path, "V/A");
  EXPECT_EQ(form.groups[1].fields[0].value, "3");
  EXPECT_EQ(form.groups[1].fields[0].unit, "m");
}

TEST(FormBuilder, AGroupThatShowsOthersAddsTheDataThatNobodyNamed) {
  const auto form =
      build("", "<V><G G_OTHERS_='True'><A/><In In_GROUP_='True'><B/></In></G></V>",
            "<V><G><X_DEF/><SensorName>S1</SensorName><A>a</A><B>b</B><Deep><C/></Deep></G></V>");
  ASSERT_EQ(form.groups.size(), 2U);
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"A", "Sensor Name"}));
  EXPECT_EQ(form.findField("SensorName")->value, "S1");
  EXPECT_TRUE(form.findField("SensorName")->readOnly);
  EXPECT_EQ(labelsOf(form.groups[1]), (Labels{"B"}));
}

TEST(FormBuilder, ANameInsideAnInnerGroupDoesNotTakeTheOuterDataOfThatName) {
  const auto form = build("", "<V><G G_OTHERS_='True'><In><B/></In></G></V>",
                          "<V><G><B>outer</B><In><B>inner</B></In></G></V>");
  ASSERT_EQ(form.groups.size(), 2U);
  EXPECT_EQ(form.groups[0].fields[0].value, "outer");
  EXPECT_EQ(form.groups[1].fields[0].value, "inner");
}

TEST(FormBuilder, AnEmptyElementThatShowsOthersIsAGroup) {
  const auto form = build("", "<V><G G_OTHERS_='True'/></V>", "<V><G><A>1</A></G></V>");
  ASSERT_EQ(form.groups.size(), 1U);
  EXPECT_EQ(form.groups[0].caption, "G");
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"A"}));
}

TEST(FormBuilder, WithoutAFormDefinitionTheAttributeDefinitionGivesTheOrder) {
  const auto form = build("<V><B/><A/></V>", "", "<V><A/><B/></V>");
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"B", "A"}));
}

TEST(FormBuilder, DefinitionsMayComeInTheirWrappers) {
  const auto form =
      build("<XADef><V><A A_UNIT_='m'/></V></XADef>", "<XFDef><V><A/></V></XFDef>", "<V><A>1</A></V>");
  EXPECT_EQ(form.findField("A")->unit, "m");
  EXPECT_EQ(form.findField("A")->value, "1");
}

TEST(FormBuilder, TheHelpBlockAndTheHeaderShowNothing) {
  const auto form =
      build("<V><X_DEF><HELP_Path>h.chm</HELP_Path></X_DEF><A/></V>", "<V><xfd_header/><A/></V>",
            "<V><X_DEF><HELP_Path>h.chm</HELP_Path></X_DEF><A>1</A></V>");
  ASSERT_EQ(form.groups.size(), 1U);
  EXPECT_EQ(labelsOf(form.groups[0]), (Labels{"A"}));
}

TEST(FormBuilder, TheDefinitionsRootIsFoundAnywhereBelowTheRootPath) {
  EXPECT_EQ(build("", "<G><A/></G>", "<V><W><G><A>deep</A></G></W></V>").findField("A")->value, "deep");
  const PageDocuments documents{"", "<G><A/></G>", "<V><G><A>first</A></G><W><G><A>second</A></G></W></V>",
                                "/V/W"};
  EXPECT_EQ(buildForm(*testXml(), documents, PageMode::Editable).findField("A")->value, "second");
}

TEST(FormBuilder, OfSeveralElementsOfOneNameTheFirstCounts) {
  EXPECT_EQ(build("", "<V><A/></V>", "<V><A>1</A><A>2</A></V>").findField("A")->value, "1");
}

TEST(FormBuilder, AFieldThatIsNotThereIsNotFound) {
  auto form = build("", "<V><A/></V>", "<V><A/></V>");
  EXPECT_EQ(form.findField("B"), nullptr);
  form.findField("A")->visible = false;
  EXPECT_FALSE(form.groups[0].fields[0].visible);
}

TEST(FormBuilder, DocumentsThatMakeNoPageFailWithTheReason) {
  EXPECT_EQ(failureOf("", "", "<V/>"), "There is no definition of the page");
  EXPECT_EQ(failureOf("<V", "<V/>", "<V/>"), "The attribute definition is no XML document");
  EXPECT_EQ(failureOf("Z:\\no\\such.XADef", "<V/>", "<V/>"), "The attribute definition is no XML document");
  EXPECT_EQ(failureOf("", "<V><A></V>", "<V/>"), "The form definition is no XML document");
  EXPECT_EQ(failureOf("", "<XFDef/>", "<V/>"), "The definition of the page is empty");
  EXPECT_EQ(failureOf("", "<V/>", ""), "The data are no XML document");
  EXPECT_EQ(failureOf("", "<V/>", "<W/>"), "The data have no element 'V'");
  EXPECT_EQ(failureOf("", "<V><A A_KIND_='knob'/></V>", "<V><A/></V>"),
            "'knob' is no kind of field, in the definition of A");
}

}  // namespace
}  // namespace vlclientui::engine
