#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Platform.h"

namespace vlclientui::test {

/// A person at the export window. One suite of scenarios is told in these terms and runs once per window
/// system: in memory, and on real widgets. Boxes, lists and buttons go by their names.
class ExportPerson {
 public:
  virtual ~ExportPerson() = default;

  /// The toolkit of this window system, over the given system.
  virtual void equip(Platform& platform) = 0;
  /// Runs `visit` when the next modal window has appeared; closes it by its frame if it is still open then.
  virtual void whenWindowAppears(std::function<void()> visit) = 0;
  /// The answer to the next question; without one it is that of the first button.
  virtual void answerQuestion(MessageAnswer answer) = 0;
  /// The file that the next save dialog gives; without one the person cancels.
  virtual void chooseFile(const std::string& path) = 0;

  /// Moves into the box and replaces its text; the box keeps the focus.
  virtual void type(const std::string& box, const std::string& text) = 0;
  /// Moves into the box.
  virtual void enter(const std::string& box) = 0;
  virtual void pressTab() = 0;
  virtual void pressEnter() = 0;
  virtual void pressEscape() = 0;
  virtual void pick(const std::string& list, const std::string& entry) = 0;
  /// Push buttons and check boxes.
  virtual void click(const std::string& name) = 0;
  virtual void closeByFrame() = 0;

  [[nodiscard]] virtual bool windowIsOpen() const = 0;
  [[nodiscard]] virtual std::string caption() const = 0;
  /// Of a box, or the selected entry of a list. A path has drive and backslashes.
  [[nodiscard]] virtual std::string text(const std::string& name) const = 0;
  [[nodiscard]] virtual std::vector<std::string> entries(const std::string& list) const = 0;
  [[nodiscard]] virtual std::string toolTip(const std::string& name) const = 0;
  /// What is told beside a box; empty when nothing is.
  [[nodiscard]] virtual std::string complaint(const std::string& box) const = 0;
  [[nodiscard]] virtual bool isRed(const std::string& box) const = 0;
  [[nodiscard]] virtual bool isEnabled(const std::string& name) const = 0;
  /// The name of what holds the focus.
  [[nodiscard]] virtual std::string focus() const = 0;
  /// Message boxes seen so far: title, a bar, text.
  [[nodiscard]] virtual std::vector<std::string> messages() const = 0;
  /// Save dialogs seen so far: title, a bar, the filter as shown.
  [[nodiscard]] virtual std::vector<std::string> saveDialogs() const = 0;
};

/// The person of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<ExportPerson> makeExportPerson();

}  // namespace vlclientui::test
