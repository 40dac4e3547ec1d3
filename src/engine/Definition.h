#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/XmlDocument.h"
#include "engine/FormModel.h"

/// Reading definition documents: how they are loaded, and the words on their elements, attributes named
/// `<Element>_<WORD>_`. docs/form-engine.md has the grammar.
namespace vlclientui::engine {

/// Without leading and trailing white space.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Whether it is the text of a document rather than the path of a file.
[[nodiscard]] bool isDefinitionText(std::string_view textOrPath);

/// The document of a definition given as text or as a path; null when it does not load.
[[nodiscard]] std::unique_ptr<XmlDocument> loadDefinition(const XmlService& xml,
                                                          const std::string& textOrPath);

/// Whether an element of a definition or of the data is part of the page. The help block and the page header
/// are not.
[[nodiscard]] bool isPageElement(const XmlNode& node);

/// The first child element of that name; null when the node is null or has none.
[[nodiscard]] XmlNodePtr childElement(const XmlNodePtr& node, std::string_view name);

/// The child elements that are part of the page.
[[nodiscard]] std::vector<XmlNodePtr> pageElements(const XmlNode& node);

/// A name in readable form: "_" becomes a blank, and a capital after a small letter gets one before it.
[[nodiscard]] std::string readableName(std::string_view name);

/// A label with its key: "&" before a letter or a digit marks it, "&&" is the character itself, and so is
/// an "&" before anything else. The first mark counts.
[[nodiscard]] Label parseLabel(std::string_view text);

/// What the two definitions say about one element. A word of the form definition goes before the same
/// word of the attribute definition.
class FieldWords {
 public:
  /// Either may be null. @param name the element's name in both.
  FieldWords(std::string name, XmlNodePtr form, XmlNodePtr attributes);

  /// The readable name when no label is given.
  [[nodiscard]] Label label() const;
  /// Nothing when no label is given.
  [[nodiscard]] std::optional<Label> givenLabel() const;
  [[nodiscard]] std::string unit() const { return word("UNIT").value_or(""); }
  [[nodiscard]] std::string help() const { return word("HELP").value_or(""); }
  /// The page of the help file about it; nothing when not given.
  [[nodiscard]] std::optional<std::string> page() const { return word("PAGE"); }
  // The least and greatest number that the field takes. @throws RuntimeFailure when they are not numbers.
  [[nodiscard]] std::optional<Bound> minimum() const { return bound("MIN"); }
  [[nodiscard]] std::optional<Bound> maximum() const { return bound("MAX"); }
  /// Without a given kind: a choice where values are listed, else a text. @throws RuntimeFailure for an
  /// unknown kind.
  [[nodiscard]] FieldKind kind() const;
  /// Entries between semicolons, each a value or `code=label`; blanks around them are ignored.
  [[nodiscard]] std::vector<AllowedValue> allowedValues() const;
  // These six give nothing when not given. @throws RuntimeFailure for anything but True and False.
  [[nodiscard]] std::optional<bool> readOnly() const { return yesNo("READONLY"); }
  [[nodiscard]] std::optional<bool> hidden() const { return yesNo("HIDDEN"); }
  /// Whether a form element groups fields of its parent and has no data of its own.
  [[nodiscard]] std::optional<bool> group() const { return yesNo("GROUP"); }
  /// Whether a group also shows the data that no definition names.
  [[nodiscard]] std::optional<bool> others() const { return yesNo("OTHERS"); }
  /// Whether a group stands on a tab of its own.
  [[nodiscard]] std::optional<bool> tab() const { return yesNo("TAB"); }
  [[nodiscard]] std::optional<bool> required() const { return yesNo("REQUIRED"); }

 private:
  [[nodiscard]] std::optional<std::string> word(std::string_view word) const;
  [[nodiscard]] std::optional<bool> yesNo(std::string_view name) const;
  [[nodiscard]] std::optional<Bound> bound(std::string_view name) const;

  std::string name_;
  XmlNodePtr form_;
  XmlNodePtr attributes_;
};

/// "True" or "False" in any case; nothing for any other text.
[[nodiscard]] std::optional<bool> parseYesNo(std::string_view text);

}  // namespace vlclientui::engine
