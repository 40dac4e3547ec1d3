#pragma once

#include <memory>
#include <string>
#include <vector>

#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "scenarios/PropertiesPerson.h"

namespace vlclientui::test {

/// Acts on the controls and on the engine's surfaces in memory.
class HeadlessPropertiesPerson : public virtual PropertiesPerson {
 public:
  HeadlessPropertiesPerson();

  void equip(Platform& platform) override;
  WindowHandle hostWindow() override;
  void lookAt(Form& page) override;
  void whenWindowAppears(std::function<void()> visit) override;
  void chooseFile(const std::string& path) override { toolkit_->chooseFile(path); }

  void click(const std::string& button) override;
  void clickTab(const std::string& strip, const std::string& caption) override;
  void typeField(const std::string& field, const std::string& text) override;
  void pickInField(const std::string& field, const std::string& entry) override;
  void clickField(const std::string& button) override;
  void pressEscape() override { form().userPressesEscape(); }
  void closeByFrame() override { form().userCloses(); }

  [[nodiscard]] bool windowIsOpen() const override { return isOpen(seen_); }
  [[nodiscard]] std::string caption() const override { return form().caption(); }
  [[nodiscard]] std::string text(const std::string& name) const override;
  [[nodiscard]] std::string toolTip(const std::string& name) const override;
  [[nodiscard]] bool isVisible(const std::string& name) const override;
  [[nodiscard]] std::vector<std::string> fields() const override;
  [[nodiscard]] std::vector<std::string> entriesOfField(const std::string& field) const override;
  [[nodiscard]] bool fieldIsOpen(const std::string& field) const override;
  [[nodiscard]] std::string complaint(const std::string& field) const override;
  [[nodiscard]] std::vector<std::string> messages() const override;
  [[nodiscard]] std::vector<std::string> failures() const override { return toolkit_->failures(); }
  [[nodiscard]] std::vector<std::string> saveDialogs() const override;

 protected:
  template <class Kind>
  [[nodiscard]] Kind& find(const std::string& name) const {
    return dynamic_cast<Kind&>(findControl(name));
  }
  [[nodiscard]] headless::HeadlessToolkit& toolkit() const { return *toolkit_; }
  /// Where engines show something in the window now.
  [[nodiscard]] std::vector<headless::HeadlessSurface*> shownSurfaces() const;
  /// Takes the focus away from the fields of all engines.
  void leaveFields();

 private:
  /// What the person looks at. The form may go, and its window with it.
  struct Seen {
    Form* form = nullptr;
    WindowHandle window = 0;
  };

  [[nodiscard]] Seen seenAs(Form& form) const { return {&form, toolkit_->windowOf(form)}; }
  [[nodiscard]] bool isOpen(const Seen& seen) const { return toolkit_->hasWindow(seen.window); }
  /// @throws RuntimeFailure when it has gone.
  [[nodiscard]] Form& form() const;
  [[nodiscard]] Control& findControl(const std::string& name) const;
  [[nodiscard]] bool shows(const Control& control) const;
  [[nodiscard]] bool shows(const headless::HeadlessSurface& surface) const;
  [[nodiscard]] headless::HeadlessSurface& page() const;
  [[nodiscard]] const engine::FormField& findField(const std::string& field) const;
  void run(Form& window, const std::function<void()>& visit);

  std::shared_ptr<headless::HeadlessToolkit> toolkit_;
  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces_;
  WindowHandle host_ = 0;
  Seen seen_;
};

}  // namespace vlclientui::test
