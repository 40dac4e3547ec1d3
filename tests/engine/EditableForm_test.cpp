#include "engine/EditableForm.h"

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Change = EditableForm::Change;

const char* const formText =
    "<V><Name Name_REQUIRED_='True'/><Count Count_KIND_='whole' Count_MIN_='1' Count_MAX_='9'/>"
    "<Kind Kind_LIST_='1=Valley;2=Mountain'/><Open Open_KIND_='yesno'/><Fixed Fixed_READONLY_='True'/>"
    "<Go Go_KIND_='button'/></V>";
const char* const dataText =
    "<V><Name>Davos</Name><Count>3</Count><Kind>2</Kind><Open>True</Open><Fixed>f</Fixed></V>";

PageDocuments documentsWith(const std::string& data) { return {"", formText, data, "//"}; }

class EditableForms : public testing::Test {
 protected:
  [[nodiscard]] const FormField& field(const std::string& name) const {
    return *form.model()->findField(name);
  }
  /// A person replaces the text and leaves the field.
  void enter(const std::string& path, const std::string& text) {
    ASSERT_TRUE(form.edit(path, text)) << path;
    form.finish(path);
  }

  EditableForm form{*testXml(), documentsWith(dataText), PageMode::Editable};
};

TEST_F(EditableForms, ShowTheDataBeforeAnyEdit) {
  EXPECT_EQ(field("Kind").value, "Mountain");
  EXPECT_EQ(field("Open").value, "Yes");
  EXPECT_THAT(form.editedPaths(), IsEmpty());
  EXPECT_EQ(form.result(), dataText);
  EXPECT_TRUE(form.check());
}

TEST_F(EditableForms, KeepAFormerPageAsItWas) {
  const auto former = form.model();
  form.edit("V/Name", "Arosa");
  EXPECT_EQ(former->findField("Name")->value, "Davos");
  EXPECT_EQ(field("Name").value, "Arosa");
}

TEST_F(EditableForms, TakeNoEditOfWhatNobodyCanChange) {
  EXPECT_FALSE(form.edit("V/Fixed", "x"));
  EXPECT_FALSE(form.edit("V/Go", "x"));
  EXPECT_FALSE(form.edit("V/Missing", "x"));
  EXPECT_FALSE(form.edit("", "x"));
  form.setFlag("Name", &FormField::enabled, false);
  EXPECT_FALSE(form.edit("V/Name", "x"));
  form.setFlag("Name", &FormField::enabled, true);
  form.setFlag("Name", &FormField::visible, false);
  EXPECT_FALSE(form.edit("V/Name", "x"));
  EXPECT_EQ(form.result(), dataText);
}

TEST_F(EditableForms, CutWhiteSpaceAtTheEndsOfWhatIsTyped) {
  enter("V/Name", " \tArosa\r\n ");
  EXPECT_EQ(field("Name").value, "Arosa");
  enter("V/Name", " Davos ");
  EXPECT_THAT(form.editedPaths(), IsEmpty());
}

TEST_F(EditableForms, ListEditedFieldsInTheOrderOfDisplay) {
  enter("V/Open", "No");
  enter("V/Count", "4");
  enter("V/Name", "Arosa");
  EXPECT_THAT(form.editedPaths(), ElementsAre("V/Name", "V/Count", "V/Open"));
}

TEST_F(EditableForms, StoreCodesForWhatIsShown) {
  enter("V/Kind", "Valley");
  enter("V/Open", "No");
  EXPECT_EQ(form.result(),
            "<V><Name>Davos</Name><Count>3</Count><Kind>1</Kind><Open>False</Open><Fixed>f</Fixed></V>");
}

TEST_F(EditableForms, ComplainWhenAFieldIsLeftAndNotWhileItIsTyped) {
  form.edit("V/Count", "12");
  EXPECT_EQ(field("Count").complaint, "");
  form.finish("V/Count");
  EXPECT_EQ(field("Count").complaint, "Must be between 1 and 9");
  form.edit("V/Count", "1x");
  EXPECT_EQ(field("Count").complaint, "Not a whole number") << "a shown complaint follows the text";
  form.edit("V/Count", "1");
  EXPECT_EQ(field("Count").complaint, "");
}

TEST_F(EditableForms, KeepWhatTheDataHadWhileAValueCannotBeTaken) {
  enter("V/Count", "12");
  enter("V/Name", "");
  EXPECT_EQ(field("Name").complaint, "Must not be empty");
  EXPECT_EQ(form.result(), dataText);
  EXPECT_FALSE(form.check());
  enter("V/Name", "Arosa");
  EXPECT_FALSE(form.check());
  EXPECT_EQ(form.result(), replaced(dataText, "Davos", "Arosa"));
}

TEST_F(EditableForms, CheckShowsComplaintsOfFieldsThatWereNotLeft) {
  form.edit("V/Count", "0");
  EXPECT_EQ(field("Count").complaint, "");
  EXPECT_FALSE(form.check());
  EXPECT_EQ(field("Count").complaint, "Must be between 1 and 9");
  form.edit("V/Count", "3");
  EXPECT_TRUE(form.check());
}

TEST_F(EditableForms, TellAChangeOnce) {
  EXPECT_EQ(form.takeChange("V/Name"), std::nullopt);
  form.edit("V/Name", "Arosa");
  EXPECT_EQ(form.takeChange("V/Name"), (Change{"Name", "Arosa"}));
  EXPECT_EQ(form.takeChange("V/Name"), std::nullopt);
  form.edit("V/Name", "Davos");
  EXPECT_EQ(form.takeChange("V/Name"), (Change{"Name", "Davos"}));
  EXPECT_EQ(form.takeChange("V/Missing"), std::nullopt);
}

TEST_F(EditableForms, TellNoChangeThatCannotBeTaken) {
  form.edit("V/Count", "many");
  EXPECT_EQ(form.takeChange("V/Count"), std::nullopt);
  form.edit("V/Count", "4");
  EXPECT_EQ(form.takeChange("V/Count"), (Change{"Count", "4"}));
}

TEST_F(EditableForms, CountChangesAsToldWhenTheyAreChecked) {
  form.edit("V/Name", "Arosa");
  EXPECT_TRUE(form.check());
  EXPECT_EQ(form.takeChange("V/Name"), std::nullopt);
}

TEST_F(EditableForms, DropEditsForOtherDataAndKeepWhatIsHidden) {
  enter("V/Name", "");
  form.setFlag("Kind", &FormField::visible, false);
  form.setFlag("Open", &FormField::enabled, false);
  const std::string other = replaced(dataText, "Davos", "Chur");
  form.replaceData(*testXml(), documentsWith(other), PageMode::Editable);
  EXPECT_EQ(field("Name").value, "Chur");
  EXPECT_EQ(field("Name").complaint, "");
  EXPECT_FALSE(field("Kind").visible);
  EXPECT_FALSE(field("Open").enabled);
  EXPECT_THAT(form.editedPaths(), IsEmpty());
  EXPECT_EQ(form.result(), other);
}

TEST_F(EditableForms, KeepEverythingWhenOtherDataMakeNoPage) {
  enter("V/Name", "Arosa");
  for (const char* const data : {"", "<V>", "<Other/>"}) {
    EXPECT_THROW(form.replaceData(*testXml(), documentsWith(data), PageMode::Editable), RuntimeFailure)
        << data;
  }
  EXPECT_EQ(field("Name").value, "Arosa");
  EXPECT_EQ(form.result(), replaced(dataText, "Davos", "Arosa"));
}

TEST_F(EditableForms, FailForAFlagOfAFieldThatThePageLacks) {
  EXPECT_THROW(form.setFlag("Missing", &FormField::visible, false), RuntimeFailure);
}

TEST(EditableForm, ShowsOneElementInEveryFieldThatNamesIt) {
  EditableForm form(
      *testXml(),
      {"", "<V><A/><More More_GROUP_='True'><A A_LABEL_='Again'/></More></V>", "<V><A>1</A></V>", "//"},
      PageMode::Editable);
  ASSERT_TRUE(form.edit("V/A", "2"));
  for (const auto& group : form.model()->groups) {
    for (const auto& field : group.fields) EXPECT_EQ(field.value, "2") << field.label;
  }
  EXPECT_THAT(form.editedPaths(), ElementsAre("V/A"));
  EXPECT_EQ(form.result(), "<V><A>2</A></V>");
}

TEST(EditableForm, PutsEditsIntoTheElementThatThePageStandsFor) {
  const PageDocuments documents{"", "<In><A/></In>", "<R><Out><A>0</A></Out><X><In><A>1</A></In></X></R>",
                                "//X/"};
  EditableForm form(*testXml(), documents, PageMode::Editable);
  ASSERT_TRUE(form.edit("In/A", "2"));
  EXPECT_EQ(form.result(), "<R><Out><A>0</A></Out><X><In><A>2</A></In></X></R>");
}

TEST(EditableForm, OnAReadOnlyPageTakesNoEdit) {
  EditableForm form(*testXml(), documentsWith(dataText), PageMode::ReadOnly);
  EXPECT_FALSE(form.edit("V/Name", "Arosa"));
  EXPECT_EQ(form.result(), dataText);
}

}  // namespace
}  // namespace vlclientui::engine
