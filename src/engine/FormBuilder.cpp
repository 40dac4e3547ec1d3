#include "engine/FormBuilder.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "engine/Definition.h"
#include "engine/FieldRules.h"

namespace vlclientui::engine {
namespace {

bool onlyGroups(const XmlNodePtr& form) {
  return FieldWords(form->name(), form, nullptr).group().value_or(false);
}

/// Whether the form names that data, directly or in a group inside it.
bool isNamed(const XmlNodePtr& form, const std::string& name) {
  if (childElement(form, name)) return true;
  return std::ranges::any_of(pageElements(*form),
                             [&](const auto& child) { return onlyGroups(child) && isNamed(child, name); });
}

/// One element in all three documents; the form always has it.
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

/// What a group hands down to everything inside it.
struct Inherited {
  bool readOnly = false;
  std::string helpPage;
  std::optional<std::size_t> tab;

  [[nodiscard]] Inherited below(const FieldWords& words) const {
    return {readOnly || words.readOnly().value_or(false), words.page().value_or(helpPage), tab};
  }
};

class Builder {
 public:
  FormModel build(const Place& root, PageMode mode) {
    const auto words = root.words();
    addGroup(root, words.givenLabel().value_or(Label{}), {mode == PageMode::ReadOnly, "", {}});
    std::erase_if(form_.groups, [](const FormGroup& group) { return group.fields.empty(); });
    dropEmptyTabs();
    form_.helpPage = words.page().value_or("");
    return std::move(form_);
  }

 private:
  // A group's own fields stand together, before the groups inside it.
  void addGroup(const Place& place, const Label& caption, Inherited inherited) {
    const auto words = place.words();
    if (words.hidden().value_or(false)) return;
    inherited = inherited.below(words);
    const bool isTab = !inherited.tab && words.tab().value_or(false);
    if (isTab) {
      inherited.tab = form_.tabs.size();
      form_.tabs.push_back(caption);
    }
    const auto group = form_.groups.size();
    // The tab itself shows the caption.
    form_.groups.push_back({isTab ? std::string() : caption.text, {}, inherited.tab});
    std::vector<Place> inner;
    for (const auto& element : pageElements(*place.form)) {
      auto child = place.child(element);
      if (child.isGroup()) {
        inner.push_back(std::move(child));
      } else {
        addField(group, child, inherited);
      }
    }
    if (words.others().value_or(false)) addOthers(group, place, inherited);
    for (const auto& child : inner) addGroup(child, child.words().label(), inherited);
  }

  static FormField newField(const std::string& path, const Label& label, const Inherited& inherited) {
    FormField field;
    field.name = path.substr(path.rfind('/') + 1);
    field.path = path;
    field.label = label.text;
    field.labelKey = label.keyOffset;
    field.readOnly = inherited.readOnly;
    field.helpPage = inherited.helpPage;
    return field;
  }

  void addField(std::size_t group, const Place& place, Inherited inherited) {
    const auto words = place.words();
    inherited = inherited.below(words);
    // An edit would lose the elements inside it.
    if (place.data && !pageElements(*place.data).empty()) inherited.readOnly = true;
    const auto kind = words.kind();
    if (words.hidden().value_or(false) || (inherited.readOnly && !place.data)) return;
    if (kind == FieldKind::Button && inherited.readOnly) return;
    auto field = newField(place.path, words.label(), inherited);
    field.kind = kind;
    describe(field, words);
    if (kind != FieldKind::Button) fill(field, textOf(place));
    form_.groups[group].fields.push_back(std::move(field));
  }

  static void describe(FormField& field, const FieldWords& words) {
    field.unit = words.unit();
    field.help = words.help();
    field.required = words.required().value_or(false);
    field.minimum = words.minimum();
    field.maximum = words.maximum();
    for (auto& value : words.allowedValues()) {
      field.allowedValues.push_back(std::move(value.label));
      field.allowedCodes.push_back(std::move(value.code));
    }
  }

  static void fill(FormField& field, const std::string& stored) {
    field.value = shownText(field, stored);
    if (std::ranges::count(field.allowedValues, field.value) == 0) field.unlistedValue = field.value;
  }

  static std::string textOf(const Place& place) {
    const auto& source = place.data ? place.data : place.attributes;
    return source ? source->text() : std::string();
  }

  void addOthers(std::size_t group, const Place& place, Inherited inherited) {
    if (!place.data) return;
    inherited.readOnly = true;
    for (const auto& element : pageElements(*place.data)) {
      const auto name = element->name();
      if (isNamed(place.form, name) || !pageElements(*element).empty()) continue;
      auto field = newField(place.path + "/" + name, {readableName(name), {}}, inherited);
      fill(field, element->text());
      form_.groups[group].fields.push_back(std::move(field));
    }
  }

  bool isUsed(std::size_t tab) const {
    return std::ranges::any_of(form_.groups, [tab](const FormGroup& group) { return group.tab == tab; });
  }

  void dropEmptyTabs() {
    for (std::size_t tab = form_.tabs.size(); tab-- > 0;) {
      if (isUsed(tab)) continue;
      form_.tabs.erase(form_.tabs.begin() + static_cast<std::ptrdiff_t>(tab));
      for (auto& group : form_.groups) {
        if (group.tab && *group.tab > tab) --*group.tab;
      }
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

// Services deliver definitions in a wrapper.
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

std::vector<XmlNodePtr> elementsBelow(const XmlNode& node) {
  auto children = node.childNodes();
  std::erase_if(children, [](const auto& child) { return child->kind() != XmlNodeKind::Element; });
  return children;
}

std::vector<std::size_t> positionOf(XmlNodePtr node) {
  std::vector<std::size_t> positions;
  for (auto parent = node->parentNode(); parent && parent->kind() == XmlNodeKind::Element;
       node = std::exchange(parent, parent->parentNode())) {
    const auto beside = elementsBelow(*parent);
    const auto found =
        std::ranges::find_if(beside, [&](const auto& other) { return other->isSameNode(*node); });
    positions.insert(positions.begin(), static_cast<std::size_t>(found - beside.begin()));
  }
  return positions;
}

/// The name comes from the first document that has the block.
std::string helpFileOf(std::initializer_list<const XmlDocument*> documents) {
  for (const auto* document : documents) {
    const auto block = document ? document->selectSingleNode("//X_DEF") : nullptr;
    if (const auto path = childElement(block, "HELP_Path")) return path->text();
  }
  return {};
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
  auto built = Builder().build({name, root, attributeRoot, dataRoot}, mode);
  built.dataRoot = positionOf(dataRoot);
  built.helpFile = helpFileOf({attributes.get(), form.get(), data.get()});
  return built;
}

}  // namespace vlclientui::engine
