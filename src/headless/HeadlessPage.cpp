// What a person can do on a page shown by HeadlessSurface.

#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "engine/FieldRules.h"
#include "headless/HeadlessSurface.h"

namespace vlclientui::headless {
namespace {

using engine::FieldKind;
using engine::FormField;

[[noreturn]] void refuse(const std::string& reason) {
  throw RuntimeFailure(reason, FailureKind::InvalidIndex);
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const auto& text : texts) all += (all.empty() ? "'" : ", '") + text + "'";
  return all;
}

std::vector<std::string> entriesOf(const FormField& field) {
  if (field.kind == FieldKind::YesNo) return {"Yes", "No"};
  auto entries = field.allowedValues;
  if (!field.unlistedValue.empty()) entries.push_back(field.unlistedValue);
  return entries;
}

/// The entry that a text means: its label, or the value that the data hold for it.
std::string entryOf(const FormField& field, const std::string& text) {
  const auto entries = entriesOf(field);
  for (const auto& candidate : {text, engine::shownText(field, text)}) {
    if (std::ranges::count(entries, candidate) > 0) return candidate;
  }
  refuse("'" + field.label + "' has no choice '" + text + "'; it has " + joined(entries));
}

}  // namespace

const FormField& HeadlessSurface::shownField(std::string_view name) const {
  checkAttached();
  if (!form_) failMissingObject("the page of the surface");
  const auto* field = form_->findField(name);
  if (!field) field = form_->fieldAt(name);
  if (!field) refuse("The page has no field '" + std::string(name) + "'");
  return *field;
}

const FormField& HeadlessSurface::reachableField(std::string_view name) const {
  const auto& field = shownField(name);
  if (!field.visible) refuse("The page does not show '" + field.label + "' now");
  if (!field.enabled) refuse("'" + field.label + "' is disabled");
  if (field.readOnly) refuse("'" + field.label + "' is read-only");
  return field;
}

void HeadlessSurface::moveFocus(const std::string& path) {
  if (path == focusedField_) return;
  const auto left = std::exchange(focusedField_, path);
  const auto* field = form_ ? form_->fieldAt(left) : nullptr;
  if (!field || !field->typed()) return;
  if (const auto listener = listener_.lock()) listener->fieldLeft(left);
}

void HeadlessSurface::userTypes(std::string_view name, const std::string& text) {
  const auto path = reachableField(name).path;
  const auto listener = listener_.lock();
  if (!listener) return;
  const auto entered = form_;
  moveFocus(path);
  // Leaving the field before may have changed the page.
  const auto& field = entered == form_ ? *form_->fieldAt(path) : reachableField(path);
  if (field.kind == FieldKind::Button) refuse("'" + field.label + "' is a button");
  listener->fieldEdited(path, field.typed() ? text : entryOf(field, text));
}

void HeadlessSurface::userLeavesField() {
  checkAttached();
  if (form_) moveFocus("");
}

// The listener owns the surface: holding it keeps both alive when a handler releases them.
std::string HeadlessSurface::userSetsField(std::string_view name, const std::string& text) {
  const auto keptAlive = listener_.lock();
  const auto path = reachableField(name).path;
  userTypes(path, text);
  if (form_) moveFocus("");
  const auto* field = form_ ? form_->fieldAt(path) : nullptr;
  return field ? field->complaint : std::string();
}

void HeadlessSurface::userPressesButton(std::string_view name) {
  const auto& field = reachableField(name);
  if (field.kind != FieldKind::Button) refuse("'" + field.label + "' is no button");
  const auto path = field.path;
  const auto listener = listener_.lock();
  moveFocus(path);
  if (listener) listener->buttonPressed(path);
}

bool HeadlessSurface::userPressesF1() {
  checkAttached();
  const auto listener = listener_.lock();
  return form_ && listener && listener->helpAsked(focusedField_);
}

}  // namespace vlclientui::headless
