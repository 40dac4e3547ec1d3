#include <utility>

#include "contracts/RuntimeFailure.h"
#include "headless/HeadlessToolkit.h"
#include "scenarios/ViewPointPerson.h"

namespace vlclientui::test {

namespace {

class HeadlessViewPointPerson : public ViewPointPerson {
 public:
  std::shared_ptr<Toolkit> equip(const std::shared_ptr<const System>& /*system*/) override {
    return toolkit_;
  }
  void open(ViewPointSteering& window) override {
    window_ = &window;
    window.load();
    toolkit_->showWindow(toolkit_->windowOf(window), showModeShow);
  }
  void click(const std::string& button) override { find<Button>(button).userClicks(); }
  void clickWhileEventsRun(const std::string& button) override {
    toolkit_->setPendingEvents([this, button, once = true]() mutable {
      if (std::exchange(once, false)) click(button);
    });
  }
  void type(const std::string& box, const std::string& text) override {
    auto& found = find<TextBox>(box);
    found.userFocuses();
    found.userTypes(text);
  }
  void pressEnter() override { window_->focusedControl()->userPresses(keyCode::enter); }
  void closeByFrame() override { window_->userCloses(); }
  void goElsewhere() override { window_->userLeaves(); }
  void comeBack() override {
    window_->userActivates();
    window_->userEnters();
  }

  bool windowIsOpen() const override { return window_->loaded(); }
  std::string caption() const override { return window_->caption(); }
  std::string text(const std::string& box) const override { return find<TextBox>(box).text(); }
  std::vector<std::string> marked() const override {
    std::vector<std::string> names;
    for (const char* const name : steeringButtons) {
      if (find<PictureButton>(name).marked()) names.emplace_back(name);
    }
    return names;
  }

 private:
  template <class Kind>
  [[nodiscard]] Kind& find(const std::string& name) const {
    Control* const found = window_->findControl(name);
    if (!found) throw RuntimeFailure("no control " + name);
    return dynamic_cast<Kind&>(*found);
  }

  std::shared_ptr<headless::HeadlessToolkit> toolkit_ = std::make_shared<headless::HeadlessToolkit>();
  ViewPointSteering* window_ = nullptr;
};

}  // namespace

std::unique_ptr<ViewPointPerson> makeViewPointPerson() { return std::make_unique<HeadlessViewPointPerson>(); }

}  // namespace vlclientui::test
