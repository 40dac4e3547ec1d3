#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vlclientui::engine {

enum class FieldKind : std::uint8_t { Text, Number, YesNo, Choice, MultiLine, Button };

/// One field of a page. Texts are UTF-8.
struct FormField {
  std::string name;   ///< the element's name; the field's control is found by "@" and this name
  std::string path;   ///< element names from the definition's root, joined by "/"
  std::string label;  ///< without a colon
  FieldKind kind = FieldKind::Text;
  std::string value;                       ///< as shown: the label where the data hold a code
  std::string unit;                        ///< shown behind the value; empty for none
  std::string help;                        ///< a sentence for a tool tip; empty for none
  std::vector<std::string> allowedValues;  ///< as shown, in order; empty for any value
  bool readOnly = false;
  bool visible = true;
  bool enabled = true;

  bool operator==(const FormField&) const = default;
};

/// Fields under one caption.
struct FormGroup {
  std::string caption;  ///< empty for fields that stand under no caption
  std::vector<FormField> fields;

  bool operator==(const FormGroup&) const = default;
};

/// A page as it is shown: a pair of definitions filled with a document. Groups and fields in display
/// order; a group never lacks fields.
struct FormModel {
  std::vector<FormGroup> groups;

  /// The first field of that name; null when the page has none.
  [[nodiscard]] const FormField* findField(std::string_view name) const;
  [[nodiscard]] FormField* findField(std::string_view name);

  bool operator==(const FormModel&) const = default;
};

}  // namespace vlclientui::engine
