// Input: a form definition, data, an attribute definition, columns and rows, each ended by a NUL byte;
// missing parts are empty. Documents may be refused, by a RuntimeFailure or an empty result and in no other
// way; what is accepted must hold what its models promise.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "contracts/RuntimeFailure.h"
#include "engine/Definition.h"
#include "engine/FormBuilder.h"
#include "engine/ListModel.h"
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
  checkList(xml, fields, takePart(input));
  return 0;
}
