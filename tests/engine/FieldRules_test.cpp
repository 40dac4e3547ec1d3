#include "engine/FieldRules.h"

#include <gtest/gtest.h>

namespace vlclientui::engine {
namespace {

FormField fieldOf(FieldKind kind) {
  FormField field;
  field.kind = kind;
  return field;
}

TEST(FieldRules, NumbersAreWrittenAsDocumentsWriteThem) {
  for (const auto* text : {"0", "-1", "+1", "12.5", ".5", "5.", "1e3", "1.5E-7"})
    EXPECT_TRUE(parseNumber(text)) << text;
  for (const auto* text : {"", " 1", "1 ", "1,5", "1.2.3", "+-1", "0x10", "inf", "nan", "1e", "1e999", "."})
    EXPECT_FALSE(parseNumber(text)) << text;
}

TEST(FieldRules, WholeNumbersHaveDigitsOnly) {
  const auto field = fieldOf(FieldKind::Whole);
  EXPECT_EQ(complaintAbout(field, "-12"), "");
  EXPECT_EQ(complaintAbout(field, "12.0"), "Not a whole number");
  EXPECT_EQ(complaintAbout(field, "1e3"), "Not a whole number");
}

TEST(FieldRules, AnEmptyTextIsTakenUnlessAValueIsRequired) {
  auto field = fieldOf(FieldKind::Number);
  EXPECT_EQ(complaintAbout(field, ""), "");
  field.required = true;
  EXPECT_EQ(complaintAbout(field, ""), "Must not be empty");
}

TEST(FieldRules, ARangeMayBeOpenAtEitherEnd) {
  auto field = fieldOf(FieldKind::Number);
  field.maximum = Bound{5, "5"};
  EXPECT_EQ(complaintAbout(field, "5.01"), "Must be at most 5");
  EXPECT_EQ(complaintAbout(field, "-1e300"), "");
  field.minimum = Bound{0.5, "0.5"};
  EXPECT_EQ(complaintAbout(field, "0.4"), "Must be between 0.5 and 5");
}

TEST(FieldRules, CharactersThatNoDocumentHoldsAreRefused) {
  const auto field = fieldOf(FieldKind::MultiLine);
  EXPECT_EQ(complaintAbout(field, "line\n\ttab \xC3\xA9 \xF0\x9F\x8C\x8D"), "");
  for (const std::string text :
       {"\x01", "\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xEF\xBF\xBF", "\xF5\x80\x80\x80"})
    EXPECT_NE(complaintAbout(field, text), "") << text;
}

TEST(FieldRules, AChoiceTakesItsEntriesAndWhatTheDataHad) {
  auto field = fieldOf(FieldKind::Choice);
  field.allowedValues = {"One", "Two"};
  field.allowedCodes = {"1", "2"};
  field.unlistedValue = "7";
  EXPECT_EQ(complaintAbout(field, "Two"), "");
  EXPECT_EQ(complaintAbout(field, "7"), "");
  EXPECT_EQ(complaintAbout(field, "2"), "Not among the allowed values");
  EXPECT_EQ(storedText(field, "Two"), "2");
  EXPECT_EQ(storedText(field, "7"), "7");
  EXPECT_EQ(shownText(field, "1"), "One");
}

TEST(FieldRules, YesAndNoStandForTrueAndFalse) {
  const auto field = fieldOf(FieldKind::YesNo);
  EXPECT_EQ(shownText(field, "tRUE"), "Yes");
  EXPECT_EQ(storedText(field, "No"), "False");
  EXPECT_EQ(complaintAbout(field, "true"), "Neither Yes nor No");
}

}  // namespace
}  // namespace vlclientui::engine
