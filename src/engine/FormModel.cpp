#include "engine/FormModel.h"

#include <algorithm>
#include <utility>

namespace vlclientui::engine {

const FormField* FormModel::findField(std::string_view name) const {
  for (const auto& group : groups) {
    const auto field = std::ranges::find(group.fields, name, &FormField::name);
    if (field != group.fields.end()) return &*field;
  }
  return nullptr;
}

FormField* FormModel::findField(std::string_view name) {
  return const_cast<FormField*>(std::as_const(*this).findField(name));
}

}  // namespace vlclientui::engine
