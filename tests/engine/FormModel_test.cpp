#include "engine/FormModel.h"

#include <gtest/gtest.h>

namespace vlclientui::engine {
namespace {

FormField fieldAt(const std::string& path, const std::string& value = {}) {
  FormField field;
  field.path = path;
  field.name = path.substr(path.rfind('/') + 1);
  field.value = value;
  return field;
}

/// Two groups with an element "A" in each.
FormModel page() {
  return {.groups = {{"", {fieldAt("V/A", "outer"), fieldAt("V/B")}}, {"In", {fieldAt("V/In/A", "inner")}}},
          .tabs = {},
          .helpFile = {},
          .helpPage = {},
          .dataRoot = {}};
}

TEST(FormModel, FindsTheFirstFieldOfANameAndEachByItsPath) {
  FormModel form = page();
  EXPECT_EQ(form.findField("A")->value, "outer");
  EXPECT_EQ(form.fieldAt("V/In/A")->value, "inner");
  EXPECT_EQ(form.findField("V/A"), nullptr);
  EXPECT_EQ(form.fieldAt("A"), nullptr);
  EXPECT_EQ(FormModel{}.findField("A"), nullptr);
}

TEST(FormModel, GivesAFoundFieldForChanging) {
  FormModel form = page();
  form.findField("B")->value = "new";
  EXPECT_EQ(form.groups[0].fields[1].value, "new");
}

TEST(FormModel, HasTheSameLayoutWhateverItsFieldsHold) {
  FormModel other = page();
  other.findField("A")->value = "x";
  other.findField("A")->complaint = "wrong";
  other.findField("A")->unlistedValue = "x";
  other.findField("B")->visible = false;
  other.findField("B")->enabled = false;
  other.dataRoot = {1, 2};
  EXPECT_TRUE(haveSameLayout(page(), other));
}

TEST(FormModel, HasAnotherLayoutWhenAnythingElseDiffers) {
  const auto differs = [](auto change) {
    FormModel other = page();
    change(other);
    return !haveSameLayout(page(), other);
  };
  EXPECT_TRUE(differs([](FormModel& form) { form.groups.pop_back(); }));
  EXPECT_TRUE(differs([](FormModel& form) { form.groups[1].caption = "Out"; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.groups[1].tab = 0; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.tabs.push_back({"Tab"}); }));
  EXPECT_TRUE(differs([](FormModel& form) { form.findField("A")->label = "Label"; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.findField("A")->kind = FieldKind::MultiLine; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.findField("A")->readOnly = true; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.findField("A")->allowedValues = {"x"}; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.findField("A")->unit = "m"; }));
  EXPECT_TRUE(differs([](FormModel& form) { form.helpFile = "Other.chm"; }));
}

TEST(FormModel, FieldsAreTypedOrPickedByTheirKind) {
  FormField field;
  for (const FieldKind kind : {FieldKind::Text, FieldKind::Number, FieldKind::Whole, FieldKind::MultiLine}) {
    field.kind = kind;
    EXPECT_TRUE(field.typed());
    EXPECT_TRUE(field.editable());
  }
  for (const FieldKind kind : {FieldKind::YesNo, FieldKind::Choice, FieldKind::Button}) {
    field.kind = kind;
    EXPECT_FALSE(field.typed());
    EXPECT_EQ(field.editable(), kind != FieldKind::Button);
  }
}

}  // namespace
}  // namespace vlclientui::engine
