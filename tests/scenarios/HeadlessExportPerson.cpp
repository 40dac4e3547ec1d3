#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "export/ExportDialogForm.h"
#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "scenarios/ExportPerson.h"

namespace vlclientui::test {

namespace {

constexpr char deleteKey = 46;

class HeadlessExportPerson : public ExportPerson {
 public:
  void equip(Platform& platform) override {
    platform.toolkit = toolkit_;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<headless::HeadlessSurfaceFactory>());
  }

  void whenWindowAppears(std::function<void()> visit) override {
    toolkit_->scriptModal([this, visit = std::move(visit)](Form& form) {
      form_ = dynamic_cast<ExportDialogForm*>(&form);
      visit();
    });
  }
  void answerQuestion(MessageAnswer answer) override { toolkit_->answerMessage(answer); }
  void chooseFile(const std::string& path) override { toolkit_->chooseFile(path); }

  void type(const std::string& box, const std::string& text) override {
    auto& found = find<TextBox>(box);
    found.userFocuses();
    for (const char typed : text.empty() ? std::string(1, deleteKey) : text) found.userPresses(typed);
    found.userTypes(text);
  }
  void enter(const std::string& box) override { find<TextBox>(box).userFocuses(); }
  /// In the order of the layout, which only windows know: the way leads out of the box.
  void pressTab() override { find<CheckBox>("ExportMD").userFocuses(); }
  void pressEnter() override { form_->focusedControl()->userPresses(keyCode::enter); }
  void pressEscape() override { form_->focusedControl()->userPresses(keyCode::escape); }
  void pick(const std::string& list, const std::string& entry) override {
    auto& found = find<DropDown>(list);
    const auto at = std::ranges::find(found.entries(), entry);
    if (at == found.entries().end()) throw RuntimeFailure("no entry " + entry);
    found.userFocuses();
    found.userSelects(static_cast<std::size_t>(at - found.entries().begin()));
  }
  void click(const std::string& name) override {
    auto& found = find<Control>(name);
    if (auto* const button = dynamic_cast<Button*>(&found)) return button->userClicks();
    dynamic_cast<CheckBox&>(found).userClicks();
  }
  void closeByFrame() override { form_->userCloses(); }

  bool windowIsOpen() const override { return form_ && form_->loaded(); }
  std::string caption() const override { return form_->caption(); }
  std::string text(const std::string& name) const override {
    const auto& found = find<Control>(name);
    if (const auto* const box = dynamic_cast<const TextBox*>(&found)) return box->text();
    return dynamic_cast<const DropDown&>(found).text();
  }
  std::vector<std::string> entries(const std::string& list) const override {
    return find<DropDown>(list).entries();
  }
  std::string toolTip(const std::string& name) const override { return find<Control>(name).toolTip(); }
  std::string complaint(const std::string& box) const override { return find<Control>(box).complaint(); }
  bool isRed(const std::string& box) const override {
    return find<Control>(box).textColor() == TextColor::Red;
  }
  bool isEnabled(const std::string& name) const override { return find<Control>(name).enabled(); }
  std::string focus() const override {
    const Control* const focused = form_->focusedControl();
    return focused ? focused->name() : std::string();
  }
  std::vector<std::string> messages() const override {
    std::vector<std::string> seen;
    for (const MessageBox& box : toolkit_->messages()) seen.push_back(box.title + "|" + box.text);
    return seen;
  }
  std::vector<std::string> saveDialogs() const override {
    std::vector<std::string> seen;
    for (const FileDialog& dialog : toolkit_->saveDialogs()) {
      seen.push_back(dialog.title + "|" + dialog.filter.substr(0, dialog.filter.find(" | ")));
    }
    return seen;
  }

 private:
  template <class Kind>
  [[nodiscard]] Kind& find(const std::string& name) const {
    Control* found = form_->controls().ExportControl1.findControl(name);
    if (!found) found = form_->findControl(name);
    if (!found) throw RuntimeFailure("no control " + name);
    return dynamic_cast<Kind&>(*found);
  }

  std::shared_ptr<headless::HeadlessToolkit> toolkit_ = std::make_shared<headless::HeadlessToolkit>();
  ExportDialogForm* form_ = nullptr;
};

}  // namespace

std::unique_ptr<ExportPerson> makeExportPerson() { return std::make_unique<HeadlessExportPerson>(); }

}  // namespace vlclientui::test
