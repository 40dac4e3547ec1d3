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

/// A page with a person's edits: the values in the fields, the complaints about them, and the document that
/// they make.
///
/// A value counts as soon as it stands in its field, even while a person is typing. A value that the field
/// cannot take does not count: the document keeps the former one. A value typed back to what the data had is
/// no edit.
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

  /// The page as it is now. Each change makes a new one, so a view may keep the former.
  [[nodiscard]] const std::shared_ptr<const FormModel>& model() const { return model_; }

  /// Replaces the data and drops the edits; what is shown and enabled stays. @throws RuntimeFailure as
  /// buildForm does, with nothing changed.
  void replaceData(const XmlService& xml, const PageDocuments& documents, PageMode mode);

  /// Sets the text of a field; a choice and a yes-or-no are picked by the shown text. A visible complaint
  /// follows the text. @returns false, with nothing done, for a field that the page lacks or a person cannot
  /// edit.
  bool edit(const std::string& path, const std::string& text);
  /// A person is done with the field: shows what is wrong with it.
  void finish(const std::string& path);
  /// The field's new value, if it can be taken and its holder has not been told of it yet.
  [[nodiscard]] std::optional<Change> takeChange(const std::string& path);
  /// The fields that were edited, in display order.
  [[nodiscard]] std::vector<std::string> editedPaths() const;

  /// Shows what is wrong with any edited field, and marks every change as told. @returns whether all is well.
  bool check();
  /// The data document with the edits. Nothing but the content of edited elements differs from the original.
  [[nodiscard]] std::string result() const;

  /// @throws RuntimeFailure when the page has no such field.
  void setFlag(const std::string& name, bool FormField::*flag, bool value);

 private:
  struct Edit {
    std::string before;  ///< what the data had
    std::string told;    ///< the last value that the holder was told
  };

  void changeFields(const std::string& path, const std::function<void(FormField&)>& change);

  std::string data_;
  std::shared_ptr<const FormModel> model_;
  std::map<std::string, Edit> edits_;
};

}  // namespace vlclientui::engine
