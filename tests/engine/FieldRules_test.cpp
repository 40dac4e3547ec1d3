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

TEST(FieldRules, NumbersHaveNoRoundingAtTheEndsOfTheirRange) {
  auto field = fieldOf(FieldKind::Number);
  field.minimum = Bound{0, "0"};
  field.maximum = Bound{1, "1"};
  EXPECT_EQ(complaintAbout(field, "-0"), "");
  EXPECT_EQ(complaintAbout(field, "1.000"), "");
  EXPECT_EQ(complaintAbout(field, "1.0000000001"), "Must be between 0 and 1");
  EXPECT_EQ(complaintAbout(field, "-1e-300"), "Must be between 0 and 1");
  field.maximum.reset();
  EXPECT_EQ(complaintAbout(field, "-1"), "Must be at least 0");
}

TEST(FieldRules, AWholeNumberKeepsToItsRangeToo) {
  auto field = fieldOf(FieldKind::Whole);
  field.minimum = Bound{1, "1"};
  EXPECT_EQ(complaintAbout(field, "+0"), "Must be at least 1");
  EXPECT_EQ(complaintAbout(field, "007"), "");
  EXPECT_EQ(complaintAbout(field, std::string(400, '9')), "Not a whole number");
  for (const char* const text : {"-", "+", "--1", "1 2", "1."}) {
    EXPECT_EQ(complaintAbout(field, text), "Not a whole number") << text;
  }
}

TEST(FieldRules, ANumberWithAllowedValuesIsANumberFirst) {
  auto field = fieldOf(FieldKind::Number);
  field.allowedValues = {"1", "2.5"};
  field.allowedCodes = field.allowedValues;
  EXPECT_EQ(complaintAbout(field, "2.5"), "");
  EXPECT_EQ(complaintAbout(field, "2.50"), "Not among the allowed values");
  EXPECT_EQ(complaintAbout(field, "two"), "Not a number, such as 12.5");
}

TEST(FieldRules, ARequiredValueIsComplainedOfBeforeAnythingElse) {
  for (const FieldKind kind : {FieldKind::Text, FieldKind::Whole, FieldKind::YesNo, FieldKind::Choice}) {
    auto field = fieldOf(kind);
    field.required = true;
    EXPECT_EQ(complaintAbout(field, ""), "Must not be empty");
  }
}

TEST(FieldRules, AnEmptyUnlistedValueOpensNoChoice) {
  auto field = fieldOf(FieldKind::Choice);
  field.allowedValues = {"One"};
  field.allowedCodes = {"1"};
  EXPECT_EQ(complaintAbout(field, "Two"), "Not among the allowed values");
  EXPECT_EQ(complaintAbout(field, ""), "");
}

TEST(FieldRules, OfCodesWithOneLabelTheFirstIsStored) {
  auto field = fieldOf(FieldKind::Choice);
  field.allowedValues = {"Same", "Same"};
  field.allowedCodes = {"a", "b"};
  EXPECT_EQ(storedText(field, "Same"), "a");
  EXPECT_EQ(shownText(field, "b"), "Same");
}

TEST(FieldRules, WhatIsNeitherTrueNorFalseShowsAsItStands) {
  const auto field = fieldOf(FieldKind::YesNo);
  for (const char* const text : {"", "1", "Yes", "perhaps", " True"}) EXPECT_EQ(shownText(field, text), text);
  EXPECT_EQ(storedText(field, "Yes"), "True");
  EXPECT_EQ(storedText(field, "perhaps"), "perhaps");
}

}  // namespace
}  // namespace vlclientui::engine
