#include "engine/FormModel.h"

#include <algorithm>
#include <utility>

namespace vlclientui::engine {
namespace {

const FormField* findBy(const FormModel& form, std::string FormField::*key, std::string_view value) {
  for (const auto& group : form.groups) {
    const auto field = std::ranges::find(group.fields, value, key);
    if (field != group.fields.end()) return &*field;
  }
  return nullptr;
}

/// Equal for all pages of one layout: whatever may change without a new layout is cleared.
FormModel layoutOf(FormModel form) {
  for (auto& group : form.groups) {
    for (auto& field : group.fields) {
      field.value.clear();
      field.complaint.clear();
      field.unlistedValue.clear();
      field.visible = field.enabled = true;
    }
  }
  form.dataRoot.clear();
  return form;
}

}  // namespace

bool FormField::typed() const {
  return kind == FieldKind::Text || kind == FieldKind::Number || kind == FieldKind::Whole ||
         kind == FieldKind::MultiLine;
}

const FormField* FormModel::findField(std::string_view name) const {
  return findBy(*this, &FormField::name, name);
}

FormField* FormModel::findField(std::string_view name) {
  return const_cast<FormField*>(std::as_const(*this).findField(name));
}

const FormField* FormModel::fieldAt(std::string_view path) const {
  return findBy(*this, &FormField::path, path);
}

FormField* FormModel::fieldAt(std::string_view path) {
  return const_cast<FormField*>(std::as_const(*this).fieldAt(path));
}

bool haveSameLayout(const FormModel& one, const FormModel& other) { return layoutOf(one) == layoutOf(other); }

}  // namespace vlclientui::engine
