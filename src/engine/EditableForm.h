#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contracts/XmlDocument.h"
#include "engine/FormBuilder.h"
#include "engine/FormModel.h"

namespace vlclientui::engine {

/// A page with what a person has done to it: the values as they stand in the fields, the complaints about
/// them, and the document that they make.
///
/// A value counts for the document from the moment at which it stands in its field, also while a person is
/// still typing. A value that the field cannot take does not count: the document keeps what it had. A value
/// that a person brought back to what the data had is no edit.
class EditableForm {
 public:
  /// What a finished edit tells.
  struct Change {
    std::string name;   ///< of the field
    std::string value;  ///< as shown

    bool operator==(const Change&) const = default;
  };

  /// @throws RuntimeFailure as buildForm does.
  EditableForm(const XmlService& xml, const PageDocuments& documents, PageMode mode);

  /// The page as it stands; a new one after each change, so that a view may keep the former.
  [[nodiscard]] const std::shared_ptr<const FormModel>& model() const { return model_; }

  /// Other data in the place of these, edits dropped; shown and enabled stay. @throws RuntimeFailure as
  /// buildForm does, with nothing changed.
  void replaceData(const XmlService& xml, const PageDocuments& documents, PageMode mode);

  /// The text that stands in a field now; a choice and a yes-or-no are picked by the shown text. A
  /// complaint that is shown follows the text. @returns whether a person could have done it: false, and
  /// nothing done, for a field that the page lacks or that cannot be edited.
  bool edit(const std::string& path, const std::string& text);
  /// A person is done with the field: what is wrong with it is shown.
  void finish(const std::string& path);
  /// The field's value since it was last told of, when it differs and can be taken.
  [[nodiscard]] std::optional<Change> takeChange(const std::string& path);
  /// The fields that were edited, in display order.
  [[nodiscard]] std::vector<std::string> editedPaths() const;

  /// Shows what is wrong with any edited field, and counts every change as told of. @returns whether
  /// nothing is wrong.
  bool check();
  /// The data document with the edits: only the content of edited elements differs from the text given.
  [[nodiscard]] std::string result() const;

  /// @throws RuntimeFailure when the page has no such field.
  void setFlag(const std::string& name, bool FormField::*flag, bool value);

 private:
  struct Edit {
    std::string before;  ///< what the data had
    std::string told;    ///< what the holder knows
  };

  void changeFields(const std::string& path, const std::function<void(FormField&)>& change);

  std::string data_;
  std::shared_ptr<const FormModel> model_;
  std::map<std::string, Edit> edits_;
};

}  // namespace vlclientui::engine
