#include "engine/FormBuilder.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "engine/Definition.h"

namespace vlclientui::engine {
namespace {

bool onlyGroups(const XmlNodePtr& form) {
  return FieldWords(form->name(), form, nullptr).group().value_or(false);
}

/// Whether the form has an element for that data, in a group inside it or directly.
bool isNamed(const XmlNodePtr& form, const std::string& name) {
  if (childElement(form, name)) return true;
  return std::ranges::any_of(pageElements(*form),
                             [&](const auto& child) { return onlyGroups(child) && isNamed(child, name); });
}

/// One element in the three documents; the form's is always there.
struct Place {
  std::string path;
  XmlNodePtr form;
  XmlNodePtr attributes;
  XmlNodePtr data;

  [[nodiscard]] std::string name() const { return form->name(); }
  [[nodiscard]] FieldWords words() const { return {name(), form, attributes}; }
  [[nodiscard]] bool isGroup() const {
    return !pageElements(*form).empty() || onlyGroups(form) || words().others().value_or(false);
  }
  [[nodiscard]] Place child(const XmlNodePtr& formChild) const {
    const auto childName = formChild->name();
    if (onlyGroups(formChild)) return {path, formChild, attributes, data};
    return {path + "/" + childName, formChild, childElement(attributes, childName),
            childElement(data, childName)};
  }
};

std::string shownYesNo(const std::string& value) {
  const auto yes = parseYesNo(value);
  if (!yes) return value;
  return *yes ? "Yes" : "No";
}

std::string shownValue(const std::string& value, FieldKind kind, const std::vector<AllowedValue>& allowed) {
  if (kind == FieldKind::YesNo) return shownYesNo(value);
  const auto found = std::ranges::find(allowed, value, &AllowedValue::code);
  return found == allowed.end() ? value : found->label;
}

class Builder {
 public:
  FormModel build(const Place& root, PageMode mode) {
    const auto words = root.words();
    addGroup(root, words.givenLabel().value_or(""), mode == PageMode::ReadOnly);
    std::erase_if(form_.groups, [](const FormGroup& group) { return group.fields.empty(); });
    return std::move(form_);
  }

 private:
  // A group's own fields stand together, before the groups inside it.
  void addGroup(const Place& place, const std::string& caption, bool readOnlyAbove) {
    const auto words = place.words();
    if (words.hidden().value_or(false)) return;
    const bool readOnly = readOnlyAbove || words.readOnly().value_or(false);
    const auto group = form_.groups.size();
    form_.groups.push_back({caption, {}});
    std::vector<Place> inner;
    for (const auto& element : pageElements(*place.form)) {
      auto child = place.child(element);
      if (child.isGroup()) {
        inner.push_back(std::move(child));
      } else {
        addField(group, child, readOnly);
      }
    }
    if (words.others().value_or(false)) addOthers(group, place);
    for (const auto& child : inner) addGroup(child, child.words().label(), readOnly);
  }

  static FormField newField(const std::string& path, const std::string& label, bool readOnly) {
    FormField field;
    field.name = path.substr(path.rfind('/') + 1);
    field.path = path;
    field.label = label;
    field.readOnly = readOnly;
    return field;
  }

  void addField(std::size_t group, const Place& place, bool readOnlyAbove) {
    const auto words = place.words();
    const bool readOnly = readOnlyAbove || words.readOnly().value_or(false);
    if (words.hidden().value_or(false) || (readOnly && !place.data)) return;
    auto field = newField(place.path, words.label(), readOnly);
    field.kind = words.kind();
    field.unit = words.unit();
    field.help = words.help();
    const auto allowed = words.allowedValues();
    for (const auto& value : allowed) field.allowedValues.push_back(value.label);
    field.value = shownValue(textOf(place), field.kind, allowed);
    form_.groups[group].fields.push_back(std::move(field));
  }

  static std::string textOf(const Place& place) {
    const auto& source = place.data ? place.data : place.attributes;
    return source ? source->text() : std::string();
  }

  void addOthers(std::size_t group, const Place& place) {
    if (!place.data) return;
    for (const auto& element : pageElements(*place.data)) {
      const auto name = element->name();
      if (isNamed(place.form, name) || !pageElements(*element).empty()) continue;
      auto field = newField(place.path + "/" + name, readableName(name), true);
      field.value = element->text();
      form_.groups[group].fields.push_back(std::move(field));
    }
  }

  FormModel form_;
};

std::unique_ptr<XmlDocument> loadOptional(const XmlService& xml, const std::string& textOrPath,
                                          const std::string& what) {
  if (textOrPath.empty()) return nullptr;
  auto document = loadDefinition(xml, textOrPath);
  if (!document) throw RuntimeFailure("The " + what + " is no XML document");
  return document;
}

// Definitions also come in the wrapper that services deliver them in.
XmlNodePtr pageRoot(const XmlDocument& definition) {
  auto root = definition.documentElement();
  if (!root || (root->name() != "XFDef" && root->name() != "XADef")) return root;
  const auto inner = pageElements(*root);
  return inner.empty() ? nullptr : inner.front();
}

std::string dataPath(std::string rootPath, const std::string& name) {
  if (!rootPath.empty() && !rootPath.ends_with('/')) rootPath += '/';
  return rootPath + name;
}

}  // namespace

FormModel buildForm(const XmlService& xml, const PageDocuments& documents, PageMode mode) {
  const auto attributes = loadOptional(xml, documents.attributeDefinition, "attribute definition");
  const auto form = loadOptional(xml, documents.formDefinition, "form definition");
  if (!attributes && !form) throw RuntimeFailure("There is no definition of the page");
  const auto root = pageRoot(form ? *form : *attributes);
  if (!root) throw RuntimeFailure("The definition of the page is empty");

  const auto data = xml.createDocument();
  if (!data->loadXml(documents.data)) throw RuntimeFailure("The data are no XML document");
  const auto name = root->name();
  const auto dataRoot = data->selectSingleNode(dataPath(documents.dataRootPath, name));
  if (!dataRoot) throw RuntimeFailure("The data have no element '" + name + "'");

  const auto attributeRoot = attributes ? attributes->selectSingleNode("//" + name) : nullptr;
  return Builder().build({name, root, attributeRoot, dataRoot}, mode);
}

}  // namespace vlclientui::engine
