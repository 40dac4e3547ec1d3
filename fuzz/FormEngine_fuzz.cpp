// Input: a form definition, data, an attribute definition, columns and rows, each ended by a NUL byte;
// missing parts are empty. Documents may be refused, by a RuntimeFailure or an empty result and in no other
// way; what is accepted must hold what its models promise. The columns are also what is typed into every
// field of the page: a result is a document, it holds the text, and it differs from the data at one place
// only.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "engine/Definition.h"
#include "engine/EditableForm.h"
#include "engine/FieldRules.h"
#include "engine/FormBuilder.h"
#include "engine/ListModel.h"
#include "engine/SourceText.h"
#include "engine/TreeModel.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;

void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", property);
  std::abort();
}

std::string takePart(std::string_view& input) {
  const auto end = input.find('\0');
  const std::string part(input.substr(0, end));
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return part;
}

// A text that is no markup would be taken for the path of a file.
std::string textOnly(std::string definition) {
  return engine::isDefinitionText(definition) ? definition : std::string();
}

void checkForm(const XmlService& xml, const engine::PageDocuments& documents, engine::PageMode mode) {
  try {
    const auto form = engine::buildForm(xml, documents, mode);
    for (const auto& group : form.groups) {
      require(!group.fields.empty(), "no group is without fields");
      for (const auto& field : group.fields) {
        require(form.findField(field.name) != nullptr, "every field is found by its name");
        require(field.path.ends_with(field.name), "a field's path ends in its name");
        require(field.readOnly || mode == engine::PageMode::Editable,
                "a read-only page has no editable field");
      }
    }
  } catch (const RuntimeFailure&) {
    // Refused, as it may be.
  }
}

/// Whether all that `after` lacks of `before` lies in the content of one element that holds no others, or is
/// the end of an empty tag.
bool differInOneContent(const std::string& before, const std::string& after) {
  const auto most = std::min(before.size(), after.size());
  std::size_t head = 0;
  while (head < most && before[head] == after[head]) ++head;
  std::size_t tail = 0;
  while (tail < most - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
  const auto end = before.size() - tail;
  if (head == end) return true;
  const engine::ElementSpans spans(before);
  for (std::size_t index = 0; index < spans.elements().size(); ++index) {
    const auto& element = spans.elements()[index];
    const auto begin = element.hasEndTag() ? element.tagEnd : element.tagEnd - 2;
    if (begin <= head && end <= element.contentEnd) {
      if (spans.childrenOf(index).empty()) return true;
    }
  }
  return false;
}

void checkEdit(const XmlService& xml, const engine::PageDocuments& documents, const std::string& path,
               const std::string& typed) {
  engine::EditableForm form(xml, documents, engine::PageMode::Editable);
  const auto before = *form.model()->fieldAt(path);
  require(form.result() == documents.data, "without an edit the result is the data");
  if (!form.edit(path, typed)) return require(!before.editable(), "an editable field is edited");
  const auto result = form.result();
  const auto parsed = xml.createDocument();
  require(parsed->loadXml(result), "a result is a document");
  const auto& field = *form.model()->fieldAt(path);
  const bool taken = engine::complaintAbout(field, field.value).empty();
  if (field.value == before.value || !taken) return require(result == documents.data, "no edit, no change");
  require(differInOneContent(documents.data, result), "an edit changes one place");
  const auto was = engine::ElementSpans(documents.data).elements().size();
  require(engine::ElementSpans(result).elements().size() >= was, "no element is lost");
  auto again = documents;
  again.data = result;
  const engine::EditableForm read(xml, again, engine::PageMode::Editable);
  const auto* shown = read.model()->fieldAt(path);
  require(shown && engine::storedText(*shown, shown->value) == engine::storedText(field, field.value),
          "what was typed is read again");
  form.edit(path, before.value);
  require(form.result() == documents.data, "a value brought back is no edit");
}

void checkEdits(const XmlService& xml, const engine::PageDocuments& documents, const std::string& typed) {
  try {
    const auto form = engine::buildForm(xml, documents, engine::PageMode::Editable);
    for (const auto& group : form.groups) {
      for (const auto& field : group.fields) checkEdit(xml, documents, field.path, typed);
    }
  } catch (const RuntimeFailure&) {
    // Refused, as it may be.
  }
}

void checkTree(const XmlService& xml, const std::string& data) {
  const auto tree = engine::TreeModel::parse(xml, data);
  if (!tree) return;
  std::size_t count = 0;
  for (engine::TreeModel::Node node = 0; count < 2000; ++count) {
    const auto next = tree->find("a", node, engine::TreeModel::Direction::Forward, false);
    if (!next || *next == node) break;
    require(tree->path(*next).starts_with("/"), "a path begins at the root");
    require(tree->find("a", *next, engine::TreeModel::Direction::Backward, false).has_value(),
            "a search goes both ways");
    node = *next;
  }
}

void checkList(const XmlService& xml, const std::string& fields, const std::string& values) {
  const auto columns = engine::parseListFields(xml, fields);
  const auto rows = engine::ListRows::parse(xml, values);
  const engine::ListModel list(columns.value_or(std::vector<engine::ListColumn>{}), rows);
  require(list.columnCount() > 0, "a list has a column");
  for (const auto& column : list.columns()) require(column.width > 0, "a column has a width");
  for (std::size_t row = 0; row < list.rowCount(); ++row) {
    require(list.cell(row, 0) == list.displayName(row), "the first column shows the display name");
    for (std::size_t column = 0; column < list.columnCount(); ++column) (void)list.cell(row, column);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  std::string_view input(reinterpret_cast<const char*>(data), size);
  engine::PageDocuments documents;
  documents.formDefinition = textOnly(takePart(input));
  documents.data = takePart(input);
  documents.attributeDefinition = textOnly(takePart(input));
  documents.dataRootPath = "//";
  checkForm(xml, documents, engine::PageMode::Editable);
  checkForm(xml, documents, engine::PageMode::ReadOnly);
  const auto fields = takePart(input);
  checkEdits(xml, documents, fields);
  checkTree(xml, documents.data);
  checkList(xml, fields, takePart(input));
  return 0;
}
