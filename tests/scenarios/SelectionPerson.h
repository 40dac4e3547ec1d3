#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Platform.h"
#include "selection/ImageServicesDialog.h"

namespace vlclientui::test {

/// A person at the add-service window. One suite of scenarios is told in these terms and runs once per window
/// system: in memory, and on real widgets.
class SelectionPerson {
 public:
  virtual ~SelectionPerson() = default;

  /// Toolkit and form engine of this window system, over the given system and documents.
  virtual void equip(Platform& platform) = 0;
  /// Runs `visit` when the next modal window has appeared; closes it by its frame if it is still open then.
  virtual void whenWindowAppears(std::function<void()> visit) = 0;
  /// What is done while an information window is open; it closes afterwards.
  virtual void whenInformationAppears(std::function<void()> visit) = 0;
  /// The file that the next file dialog gives.
  virtual void chooseFile(const std::string& path) = 0;

  virtual void typeServer(const std::string& text) = 0;
  virtual void pressEnterInServerBox() = 0;
  virtual void pickServer(int index) = 0;
  virtual void clickRow(const std::string& name) = 0;
  virtual void doubleClickRow(const std::string& name) = 0;
  /// The last row of that name: services stand behind folders.
  virtual void doubleClickLastRow(const std::string& name) = 0;
  virtual void pressBackspaceInList() = 0;
  virtual void pressEnterInList() = 0;
  /// Push buttons and check boxes, by their names.
  virtual void clickButton(const std::string& name) = 0;
  virtual void selectEntries(const std::vector<int>& indexes) = 0;
  virtual void pressCtrlF1InServerBox() = 0;
  virtual void closeByFrame() = 0;

  [[nodiscard]] virtual bool windowIsOpen() const = 0;
  [[nodiscard]] virtual std::string caption() const = 0;
  [[nodiscard]] virtual std::vector<std::string> rows() const = 0;
  /// Cells of a row in column order, the name first.
  [[nodiscard]] virtual std::vector<std::string> cells(const std::string& name) const = 0;
  [[nodiscard]] virtual std::vector<std::string> columns() const = 0;
  [[nodiscard]] virtual std::string serverText() const = 0;
  [[nodiscard]] virtual std::vector<std::string> serverEntries() const = 0;
  [[nodiscard]] virtual std::string title() const = 0;
  [[nodiscard]] virtual std::vector<std::string> selectedList() const = 0;
  [[nodiscard]] virtual bool isEnabled(const std::string& name) const = 0;
  [[nodiscard]] virtual bool isVisible(const std::string& name) const = 0;
  /// Message boxes seen so far: title, a bar, text.
  [[nodiscard]] virtual std::vector<std::string> messages() const = 0;
  /// Labels and values of the information window seen last: label, a bar, value.
  [[nodiscard]] virtual std::vector<std::string> information() const = 0;
};

/// The person of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<SelectionPerson> makeSelectionPerson();

}  // namespace vlclientui::test
