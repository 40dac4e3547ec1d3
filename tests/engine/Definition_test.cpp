#include "engine/Definition.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/EngineFixture.h"

namespace vlclientui::engine {
namespace {

/// The words of one element, written in the form definition and in the attribute definition.
class Words {
 public:
  explicit Words(const std::string& form, const std::string& attributes = "")
      : form_(load("<F " + form + "/>")), attributes_(load("<F " + attributes + "/>")) {}

  [[nodiscard]] FieldWords words() const {
    return {"F", form_->documentElement(), attributes_->documentElement()};
  }

 private:
  static std::unique_ptr<XmlDocument> load(const std::string& text) {
    auto document = testXml()->createDocument();
    EXPECT_TRUE(document->loadXml(text)) << text;
    return document;
  }

  std::unique_ptr<XmlDocument> form_;
  std::unique_ptr<XmlDocument> attributes_;
};

TEST(Definition, ATextBeginsWithMarkupAndAnythingElseIsAPath) {
  EXPECT_TRUE(isDefinitionText("<Vorlane/>"));
  EXPECT_TRUE(isDefinitionText(" \r\n\t<Vorlane/>"));
  EXPECT_TRUE(isDefinitionText("\xEF\xBB\xBF<Vorlane/>"));
  EXPECT_FALSE(isDefinitionText("C:\\Program\\VLClient.XADef"));
  EXPECT_FALSE(isDefinitionText("/usr/share/VLClient.XADef"));
  EXPECT_FALSE(isDefinitionText(""));
}

TEST(Definition, ANameReadsWithBlanksForUnderscoresAndBetweenItsWords) {
  EXPECT_EQ(readableName("Geographic_Region"), "Geographic Region");
  EXPECT_EQ(readableName("PixelUnit"), "Pixel Unit");
  EXPECT_EQ(readableName("NBands"), "NBands");
  EXPECT_EQ(readableName("SRS"), "SRS");
  EXPECT_EQ(readableName(""), "");
}

TEST(Definition, YesAndNoAreTrueAndFalseInAnyCase) {
  EXPECT_EQ(parseYesNo("True"), true);
  EXPECT_EQ(parseYesNo("fALSE"), false);
  EXPECT_EQ(parseYesNo("yes"), std::nullopt);
  EXPECT_EQ(parseYesNo(""), std::nullopt);
}

TEST(Definition, TheFormDefinitionGoesBeforeTheAttributeDefinition) {
  EXPECT_EQ(Words("F_LABEL_='form'", "F_LABEL_='attributes'").words().label().text, "form");
  EXPECT_EQ(Words("", "F_LABEL_='attributes'").words().label().text, "attributes");
  EXPECT_EQ(Words("F_READONLY_='False'", "F_READONLY_='True'").words().readOnly(), false);
}

TEST(Definition, AWordOfAnotherElementCountsNothing) {
  EXPECT_EQ(Words("G_LABEL_='other'").words().givenLabel(), std::nullopt);
}

TEST(Definition, EveryKindHasItsWord) {
  EXPECT_EQ(Words("F_KIND_='text'").words().kind(), FieldKind::Text);
  EXPECT_EQ(Words("F_KIND_='number'").words().kind(), FieldKind::Number);
  EXPECT_EQ(Words("F_KIND_='YesNo'").words().kind(), FieldKind::YesNo);
  EXPECT_EQ(Words("F_KIND_='choice'").words().kind(), FieldKind::Choice);
  EXPECT_EQ(Words("F_KIND_='multiline'").words().kind(), FieldKind::MultiLine);
  EXPECT_EQ(Words("F_KIND_=' button '").words().kind(), FieldKind::Button);
}

TEST(Definition, AnUnknownKindFailsAndNamesTheElement) {
  try {
    (void)Words("F_KIND_='slider'").words().kind();
    FAIL() << "an unknown kind was taken";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.description(), "'slider' is no kind of field, in the definition of F");
  }
}

TEST(Definition, AFieldIsATextUnlessValuesAreListed) {
  EXPECT_EQ(Words("").words().kind(), FieldKind::Text);
  EXPECT_EQ(Words("", "F_LIST_='a;b'").words().kind(), FieldKind::Choice);
}

TEST(Definition, AllowedValuesStandBetweenSemicolons) {
  const auto values =
      Words("F_LIST_=' By Attribute ; Lock Raster;;Closest to Viewpoint;'").words().allowedValues();
  ASSERT_EQ(values.size(), 3U);
  EXPECT_EQ(values[0].label, "By Attribute");
  EXPECT_EQ(values[1].code, "Lock Raster");
  EXPECT_EQ(values[2].label, "Closest to Viewpoint");
}

TEST(Definition, AnAllowedValueMayHaveACodeOfItsOwn) {
  const auto values = Words("F_LIST_='0=Grayscale; 255 = Unknown'").words().allowedValues();
  ASSERT_EQ(values.size(), 2U);
  EXPECT_EQ(values[0].code, "0");
  EXPECT_EQ(values[0].label, "Grayscale");
  EXPECT_EQ(values[1].code, "255");
  EXPECT_EQ(values[1].label, "Unknown");
}

TEST(Definition, WithoutAListAnyValueIsAllowed) { EXPECT_TRUE(Words("").words().allowedValues().empty()); }

TEST(Definition, AWordThatIsNeitherTrueNorFalseFails) {
  EXPECT_THROW((void)Words("F_READONLY_='perhaps'").words().readOnly(), RuntimeFailure);
  EXPECT_THROW((void)Words("F_HIDDEN_=''").words().hidden(), RuntimeFailure);
}

TEST(Definition, HelpAndHeaderAreNoPartOfThePage) {
  const auto document = testXml()->createDocument();
  ASSERT_TRUE(document->loadXml("<V><X_DEF/><A/>text<!-- note --><xfd_header/><B/></V>"));
  const auto elements = pageElements(*document->documentElement());
  ASSERT_EQ(elements.size(), 2U);
  EXPECT_EQ(elements[0]->name(), "A");
  EXPECT_EQ(elements[1]->name(), "B");
}

TEST(Definition, ANodeThatIsNotThereHasNoChildren) { EXPECT_EQ(childElement(nullptr, "A"), nullptr); }

TEST(Definition, AMarkBeforeALetterOrADigitIsTheKeyOfALabel) {
  EXPECT_EQ(parseLabel("&Name"), (Label{"Name", 0}));
  EXPECT_EQ(parseLabel("File &2"), (Label{"File 2", 5}));
  EXPECT_EQ(parseLabel("\xC3\x9C&\xC3\xA4"), (Label{"\xC3\x9C\xC3\xA4", 2}));
  EXPECT_EQ(parseLabel("No key"), (Label{"No key", std::nullopt}));
  EXPECT_EQ(parseLabel(""), (Label{"", std::nullopt}));
}

TEST(Definition, TheFirstMarkOfALabelCountsAndTheOthersGo) {
  EXPECT_EQ(parseLabel("&Save &As"), (Label{"Save As", 0}));
}

TEST(Definition, TwoMarksAreTheCharacterItselfAndSoIsOneBeforeAnythingElse) {
  EXPECT_EQ(parseLabel("Salt && &Pepper"), (Label{"Salt & Pepper", 7}));
  EXPECT_EQ(parseLabel("A & B"), (Label{"A & B", std::nullopt}));
  EXPECT_EQ(parseLabel("End&"), (Label{"End&", std::nullopt}));
  EXPECT_EQ(parseLabel("&&&N"), (Label{"&N", 1}));
  EXPECT_EQ(parseLabel("&&&&"), (Label{"&&", std::nullopt}));
}

TEST(Definition, TheEndsOfARangeAreNumbersWithTheTextThatIsWritten) {
  const auto range = Words("F_MIN_=' 0.50 '", "F_MAX_='1e3' F_MIN_='-7'");
  EXPECT_EQ(range.words().minimum(), (Bound{0.5, "0.50"}));
  EXPECT_EQ(range.words().maximum(), (Bound{1000, "1e3"}));
  EXPECT_EQ(Words("").words().minimum(), std::nullopt);
  for (const char* const text : {"", "low", "1,5", "inf"}) {
    EXPECT_THROW((void)Words(std::string("F_MAX_='") + text + "'").words().maximum(), RuntimeFailure) << text;
  }
}

TEST(Definition, WordsThatAreNotGivenSayNothing) {
  const Words nothing("");
  EXPECT_EQ(nothing.words().unit(), "");
  EXPECT_EQ(nothing.words().help(), "");
  EXPECT_EQ(nothing.words().page(), std::nullopt);
  EXPECT_EQ(nothing.words().label().text, "F");
  for (const auto& answer : {nothing.words().readOnly(), nothing.words().hidden(), nothing.words().group(),
                             nothing.words().others(), nothing.words().tab(), nothing.words().required()}) {
    EXPECT_EQ(answer, std::nullopt);
  }
}

TEST(Definition, AnEmptyWordOfTheFormHidesThatOfTheAttributes) {
  EXPECT_EQ(Words("F_UNIT_=''", "F_UNIT_='m'").words().unit(), "");
  EXPECT_EQ(Words("F_LABEL_=''", "F_LABEL_='A'").words().label().text, "");
  EXPECT_TRUE(Words("F_LIST_=''", "F_LIST_='a;b'").words().allowedValues().empty());
}

TEST(Definition, AnAllowedValueMayHaveSignsInItsLabelAndNothingInItsCode) {
  const auto values = Words("F_LIST_='1=a=b;=none;x='").words().allowedValues();
  ASSERT_EQ(values.size(), 3U);
  EXPECT_EQ(values[0], (AllowedValue{"1", "a=b"}));
  EXPECT_EQ(values[1], (AllowedValue{"", "none"}));
  EXPECT_EQ(values[2], (AllowedValue{"x", ""}));
}

TEST(Definition, LoadsFromATextOrAFileAndIsNothingElsewhere) {
  const std::string file = testDataFolder() + "/engine/Sample.XADef";
  ASSERT_TRUE(loadDefinition(*testXml(), file));
  EXPECT_EQ(loadDefinition(*testXml(), " <A/>")->documentElement()->name(), "A");
  for (const char* const text : {"", "   ", "<A>", "/no/such/file.XADef"}) {
    EXPECT_EQ(loadDefinition(*testXml(), text), nullptr) << text;
  }
}

TEST(Definition, TrimsTheWhiteSpaceOfDocumentsOnly) {
  EXPECT_EQ(trimmed(" \t\r\na b \n"), "a b");
  EXPECT_EQ(trimmed("\u00A0a"), "\u00A0a");
  EXPECT_EQ(trimmed(" \n "), "");
}

}  // namespace
}  // namespace vlclientui::engine
