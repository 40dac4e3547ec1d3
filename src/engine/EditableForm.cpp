#include "engine/EditableForm.h"

#include <algorithm>

#include "contracts/RuntimeFailure.h"
#include "engine/Definition.h"
#include "engine/FieldRules.h"
#include "engine/SourceText.h"

namespace vlclientui::engine {
namespace {

void keepFlags(FormModel& form, const FormModel& before) {
  for (auto& group : form.groups) {
    for (auto& field : group.fields) {
      const auto* former = before.fieldAt(field.path);
      if (!former) continue;
      field.visible = former->visible;
      field.enabled = former->enabled;
    }
  }
}

}  // namespace

EditableForm::EditableForm(const XmlService& xml, const PageDocuments& documents, PageMode mode)
    : data_(documents.data), model_(std::make_shared<FormModel>(buildForm(xml, documents, mode))) {}

void EditableForm::replaceData(const XmlService& xml, const PageDocuments& documents, PageMode mode) {
  auto form = buildForm(xml, documents, mode);
  keepFlags(form, *model_);
  data_ = documents.data;
  model_ = std::make_shared<FormModel>(std::move(form));
  edits_.clear();
}

/// Several fields may show one element: all of them follow.
void EditableForm::changeFields(const std::string& path, const std::function<void(FormField&)>& change) {
  auto form = *model_;
  for (auto& group : form.groups) {
    for (auto& field : group.fields) {
      if (field.path == path) change(field);
    }
  }
  model_ = std::make_shared<FormModel>(std::move(form));
}

bool EditableForm::edit(const std::string& path, const std::string& text) {
  const auto* field = model_->fieldAt(path);
  if (!field || !field->editable()) return false;
  const std::string value(trimmed(text));
  edits_.try_emplace(path, Edit{field->value, field->value});
  if (value == field->value) return true;
  changeFields(path, [&](FormField& edited) {
    edited.value = value;
    if (!edited.complaint.empty()) edited.complaint = complaintAbout(edited, value);
  });
  return true;
}

void EditableForm::finish(const std::string& path) {
  const auto found = edits_.find(path);
  const auto* field = model_->fieldAt(path);
  if (found == edits_.end() || !field) return;
  // A value that the data brought is never complained about.
  const bool isEdit = field->value != found->second.before;
  const auto complaint = isEdit ? complaintAbout(*field, field->value) : std::string();
  if (complaint == field->complaint) return;
  changeFields(path, [&](FormField& finished) { finished.complaint = complaint; });
}

std::optional<EditableForm::Change> EditableForm::takeChange(const std::string& path) {
  const auto found = edits_.find(path);
  const auto* field = model_->fieldAt(path);
  if (found == edits_.end() || !field || field->value == found->second.told) return std::nullopt;
  if (field->value != found->second.before && !complaintAbout(*field, field->value).empty())
    return std::nullopt;
  found->second.told = field->value;
  return Change{field->name, field->value};
}

std::vector<std::string> EditableForm::editedPaths() const {
  std::vector<std::string> paths;
  for (const auto& group : model_->groups) {
    for (const auto& field : group.fields) {
      const auto found = edits_.find(field.path);
      if (found == edits_.end() || field.value == found->second.before) continue;
      if (std::ranges::count(paths, field.path) == 0) paths.push_back(field.path);
    }
  }
  return paths;
}

bool EditableForm::check() {
  bool allGood = true;
  for (const auto& [path, edit] : std::map(edits_)) {
    finish(path);
    (void)takeChange(path);
  }
  for (const auto& path : editedPaths()) allGood = allGood && model_->fieldAt(path)->complaint.empty();
  return allGood;
}

std::string EditableForm::result() const {
  auto document = data_;
  for (const auto& path : editedPaths()) {
    const auto& field = *model_->fieldAt(path);
    if (!complaintAbout(field, field.value).empty()) continue;
    document = withElementText(document, model_->dataRoot, path, storedText(field, field.value));
  }
  return document;
}

void EditableForm::setFlag(const std::string& name, bool FormField::*flag, bool value) {
  auto form = *model_;
  auto* field = form.findField(name);
  if (!field) failMissingObject(name);
  field->*flag = value;
  model_ = std::make_shared<FormModel>(std::move(form));
}

}  // namespace vlclientui::engine
