#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vlclientui::engine {

/// A button holds nothing. Text, Number, Whole and MultiLine are typed, the others picked.
enum class FieldKind : std::uint8_t { Text, Number, Whole, YesNo, Choice, MultiLine, Button };

/// A text with the key that leads to it, pressed together with Alt.
struct Label {
  std::string text;                        ///< as it is read, without a mark
  std::optional<std::size_t> keyOffset{};  ///< where in the text the key stands, in bytes

  bool operator==(const Label&) const = default;
};

/// A limit for a field's numbers, with the definition's text for it.
struct Bound {
  double number = 0;
  std::string text;

  bool operator==(const Bound&) const = default;
};

/// A value that a field allows: what the data hold and what is shown for it.
struct AllowedValue {
  std::string code;
  std::string label;

  bool operator==(const AllowedValue&) const = default;
};

/// One field of a page. Texts are UTF-8.
struct FormField {
  std::string name;   ///< the element's name; the field's control is found by "@" and this name
  std::string path;   ///< element names from the definition's root, joined by "/"
  std::string label;  ///< without a colon
  std::optional<std::size_t> labelKey;  ///< as Label::keyOffset
  FieldKind kind = FieldKind::Text;
  std::string value;                       ///< as shown: the label where the data hold a code
  std::string unit;                        ///< shown behind the value; empty for none
  std::string help;                        ///< a sentence for a tool tip; empty for none
  std::string helpPage;                    ///< the page of the help file that tells of it; empty for none
  std::vector<std::string> allowedValues;  ///< as shown, in order; empty for any value
  std::vector<std::string> allowedCodes;   ///< what the data hold for each of them
  /// The data's own value where the allowed ones lack it: a choice offers it too, as the last entry.
  std::string unlistedValue;
  bool required = false;
  std::optional<Bound> minimum;
  std::optional<Bound> maximum;
  bool readOnly = false;
  bool visible = true;
  bool enabled = true;
  /// Why the value cannot be taken, for a person; empty when all is well.
  std::string complaint;

  /// Whether a person can change it now.
  [[nodiscard]] bool editable() const { return !readOnly && visible && enabled && kind != FieldKind::Button; }
  /// Whether its value is typed rather than picked.
  [[nodiscard]] bool typed() const;

  bool operator==(const FormField&) const = default;
};

/// Fields under one caption.
struct FormGroup {
  std::string caption;  ///< empty for fields that stand under no caption
  std::vector<FormField> fields;
  std::optional<std::size_t> tab{};  ///< the tab that it stands on; nothing for none

  bool operator==(const FormGroup&) const = default;
};

/// A page to show: a pair of definitions filled with a document. Groups and fields in display order. A group
/// has fields, a tab has groups; groups without a tab come above the tabs.
struct FormModel {
  std::vector<FormGroup> groups;
  std::vector<Label> tabs;
  std::string helpFile;  ///< empty for none
  std::string helpPage;  ///< of the page as a whole; empty for none
  /// Where the page's root stands in the data: positions among the child elements, from the document's
  /// element down.
  std::vector<std::size_t> dataRoot;

  /// The first field of that name; null when the page has none.
  [[nodiscard]] const FormField* findField(std::string_view name) const;
  [[nodiscard]] FormField* findField(std::string_view name);
  /// The first field of that path; null when the page has none.
  [[nodiscard]] const FormField* fieldAt(std::string_view path) const;
  [[nodiscard]] FormField* fieldAt(std::string_view path);

  bool operator==(const FormModel&) const = default;
};

/// Whether two pages have the same fields in the same places, whatever they hold: one can replace the other
/// without a new layout.
[[nodiscard]] bool haveSameLayout(const FormModel& one, const FormModel& other);

}  // namespace vlclientui::engine
