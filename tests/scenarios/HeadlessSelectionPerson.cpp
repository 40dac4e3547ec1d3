#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "scenarios/SelectionPerson.h"

namespace vlclientui::test {

namespace {

class HeadlessSelectionPerson : public SelectionPerson {
 public:
  HeadlessSelectionPerson()
      : toolkit_(std::make_shared<headless::HeadlessToolkit>()),
        surfaces_(std::make_shared<headless::HeadlessSurfaceFactory>(
            headless::ChildWindowHooks{[this](WindowHandle parent, const std::string& text) {
                                         return toolkit_->addChildWindow(parent, text);
                                       },
                                       [this](WindowHandle window) { toolkit_->removeWindow(window); }})) {}

  void equip(Platform& platform) override {
    platform.toolkit = toolkit_;
    platform.plexa = std::make_shared<engine::EngineFactory>(platform.xml, surfaces_);
  }

  void whenWindowAppears(std::function<void()> visit) override {
    toolkit_->scriptModal([this, visit = std::move(visit)](Form& form) {
      form_ = dynamic_cast<ImageServicesDialogForm*>(&form);
      visit();
    });
  }
  void whenInformationAppears(std::function<void()> visit) override {
    surfaces_->setWindowScript([visit = std::move(visit)](const headless::HeadlessWindow&) { visit(); });
  }
  void chooseFile(const std::string& path) override { toolkit_->chooseFile(path); }

  void typeServer(const std::string& text) override {
    control().uiTxtBoxServerName.userFocuses();
    control().uiTxtBoxServerName.userTypes(text);
  }
  void pressEnterInServerBox() override { control().uiTxtBoxServerName.userPresses(keyCode::enter); }
  void pickServer(int index) override {
    control().uiTxtBoxServerName.userSelects(static_cast<std::size_t>(index));
  }
  void clickRow(const std::string& name) override {
    form_->userFocusesElsewhere();
    list().userClicksRow(name);
  }
  void doubleClickRow(const std::string& name) override {
    form_->userFocusesElsewhere();
    list().userDoubleClicksRow(name);
  }
  void doubleClickLastRow(const std::string& name) override {
    form_->userFocusesElsewhere();
    const std::vector<std::string> names = list().rowNames();
    const auto last = std::ranges::find(names.rbegin(), names.rend(), name);
    list().userDoubleClicksRow(static_cast<std::size_t>(names.rend() - last) - 1);
  }
  void pressBackspaceInList() override {
    form_->userFocusesElsewhere();
    list().userPressesBackspace();
  }
  void pressEnterInList() override {
    form_->userFocusesElsewhere();
    list().userPressesEnter();
  }
  void clickButton(const std::string& name) override {
    Control& found = find(name);
    if (auto* const button = dynamic_cast<Button*>(&found)) return button->userClicks();
    dynamic_cast<CheckBox&>(found).userClicks();
  }
  void selectEntries(const std::vector<int>& indexes) override {
    control().ListBox.userFocuses();
    control().ListBox.userSelects({indexes.begin(), indexes.end()});
  }
  void pressCtrlF1InServerBox() override {
    control().uiTxtBoxServerName.userFocuses();
    control().uiTxtBoxServerName.userPresses(keyCode::f1, keyModifier::control);
  }
  void closeByFrame() override { form_->userCloses(); }

  bool windowIsOpen() const override { return form_ && form_->loaded(); }
  std::string caption() const override { return form_->caption(); }
  std::vector<std::string> rows() const override { return list().rowNames(); }
  std::vector<std::string> cells(const std::string& name) const override { return list().rowCells(name); }
  std::vector<std::string> columns() const override {
    std::vector<std::string> titles;
    for (const auto& column : list().list()->columns()) titles.push_back(column.title);
    return titles;
  }
  std::string serverText() const override { return control().uiTxtBoxServerName.text(); }
  std::vector<std::string> serverEntries() const override { return control().uiTxtBoxServerName.entries(); }
  std::string title() const override { return control().Desc.text(); }
  std::vector<std::string> selectedList() const override { return control().ListBox.entries(); }
  bool isEnabled(const std::string& name) const override { return find(name).enabled(); }
  bool isVisible(const std::string& name) const override { return find(name).visible(); }
  std::vector<std::string> messages() const override {
    std::vector<std::string> seen;
    for (const MessageBox& box : toolkit_->messages()) seen.push_back(box.title + "|" + box.text);
    return seen;
  }
  std::vector<std::string> information() const override {
    std::vector<std::string> seen;
    if (surfaces_->windows().empty()) return seen;
    for (const auto& group : surfaces_->windows().back().form->groups) {
      for (const auto& field : group.fields) seen.push_back(field.label + "|" + field.value);
    }
    return seen;
  }

 private:
  [[nodiscard]] ImageServicesControl& control() const { return form_->controls().ImageServicesControl1; }
  [[nodiscard]] headless::HeadlessSurface& list() const {
    auto* const surface = surfaces_->surfaceIn(toolkit_->windowOf(control()));
    if (!surface) throw RuntimeFailure("no list is shown");
    return *surface;
  }
  [[nodiscard]] Control& find(const std::string& name) const {
    Control* found = control().findControl(name);
    if (!found) found = form_->findControl(name);
    if (!found) throw RuntimeFailure("no control " + name);
    return *found;
  }

  std::shared_ptr<headless::HeadlessToolkit> toolkit_;
  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces_;
  ImageServicesDialogForm* form_ = nullptr;
};

}  // namespace

std::unique_ptr<SelectionPerson> makeSelectionPerson() { return std::make_unique<HeadlessSelectionPerson>(); }

}  // namespace vlclientui::test
