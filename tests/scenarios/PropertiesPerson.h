#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Platform.h"
#include "contracts/controls/Form.h"

namespace vlclientui::test {

/// A person at the properties of a service: at the page in a window of the host, or at the one-window dialog.
/// One suite of scenarios is told in these terms and runs once per window system: in memory, and on real
/// widgets. Buttons, labels and boxes of the window go by their names; fields that the form engine draws go
/// by what is read beside them, "Caption of their group/Label".
class PropertiesPerson {
 public:
  virtual ~PropertiesPerson() = default;

  /// Toolkit and form engine of this window system, over the given system and documents.
  virtual void equip(Platform& platform) = 0;
  /// The one window of the host, which takes pages.
  [[nodiscard]] virtual WindowHandle hostWindow() = 0;
  /// Turns to a page that stands in the window of the host; every act goes there from now on.
  virtual void lookAt(Form& page) = 0;
  /// Runs `visit` when the next modal window has appeared; closes it by its frame if it is still open then.
  virtual void whenWindowAppears(std::function<void()> visit) = 0;
  /// The file that the next save dialog gives; without one the person cancels.
  virtual void chooseFile(const std::string& path) = 0;

  virtual void click(const std::string& button) = 0;
  virtual void clickTab(const std::string& strip, const std::string& caption) = 0;
  /// Moves into the field and replaces its text; the field keeps the focus.
  virtual void typeField(const std::string& field, const std::string& text) = 0;
  virtual void pickInField(const std::string& field, const std::string& entry) = 0;
  virtual void clickField(const std::string& button) = 0;
  virtual void pressEscape() = 0;
  virtual void closeByFrame() = 0;

  [[nodiscard]] virtual bool windowIsOpen() const = 0;
  [[nodiscard]] virtual std::string caption() const = 0;
  /// Of a label or a box.
  [[nodiscard]] virtual std::string text(const std::string& name) const = 0;
  [[nodiscard]] virtual std::string toolTip(const std::string& name) const = 0;
  [[nodiscard]] virtual bool isVisible(const std::string& name) const = 0;
  /// The fields that show: field, a bar, what stands in it with its unit. A button holds nothing.
  [[nodiscard]] virtual std::vector<std::string> fields() const = 0;
  [[nodiscard]] virtual std::vector<std::string> entriesOfField(const std::string& field) const = 0;
  /// Whether the person can change the field or click on it.
  [[nodiscard]] virtual bool fieldIsOpen(const std::string& field) const = 0;
  /// What is told beside a field; empty when nothing is.
  [[nodiscard]] virtual std::string complaint(const std::string& field) const = 0;
  /// Message boxes seen so far: title, a bar, text.
  [[nodiscard]] virtual std::vector<std::string> messages() const = 0;
  /// Failures that reached the top-level handler, in the words that the person saw.
  [[nodiscard]] virtual std::vector<std::string> failures() const = 0;
  /// Save dialogs seen so far: the filters as shown.
  [[nodiscard]] virtual std::vector<std::string> saveDialogs() const = 0;
};

/// The person of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<PropertiesPerson> makePropertiesPerson();

}  // namespace vlclientui::test
