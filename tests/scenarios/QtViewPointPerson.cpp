#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <optional>

#include "scenarios/QtHands.h"
#include "scenarios/ViewPointPerson.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

namespace {

/// Acts on the real widgets by synthesized keys and clicks.
class QtViewPointPerson : public ViewPointPerson {
 public:
  std::shared_ptr<Toolkit> equip(const std::shared_ptr<const System>& system) override {
    toolkit_ = std::make_shared<widgets::QtToolkit>(system);
    return toolkit_;
  }
  void open(ViewPointSteering& window) override {
    window.load();
    toolkit_->showWindow(toolkit_->windowOf(window), showModeShow);
    QWidget& view = *toolkit_->viewOf(window);
    hands_.lookAt(view);
    activate(view);
  }
  void click(const std::string& button) override { hands_.click(button); }
  void clickWhileEventsRun(const std::string& button) override {
    QTimer::singleShot(0, &hands_.window(), [this, button] { click(button); });
  }
  void type(const std::string& box, const std::string& text) override {
    hands_.type(hands_.find<QLineEdit>(box), text);
  }
  void pressEnter() override { hands_.press(Qt::Key_Return); }
  void closeByFrame() override { hands_.closeByFrame(); }
  void goElsewhere() override {
    elsewhere_.emplace().show();
    activate(*elsewhere_);
  }
  void comeBack() override { activate(hands_.window()); }

  bool windowIsOpen() const override { return hands_.windowIsOpen(); }
  std::string caption() const override { return hands_.caption(); }
  std::string text(const std::string& box) const override {
    return hands_.find<QLineEdit>(box).text().toStdString();
  }
  std::vector<std::string> marked() const override {
    std::vector<std::string> names;
    for (const char* const name : steeringButtons) {
      if (hands_.find<QAbstractButton>(name).isChecked()) names.emplace_back(name);
    }
    return names;
  }

 private:
  static void activate(QWidget& window) {
    window.activateWindow();
    QtHands::need(QTest::qWaitForWindowActive(&window), "the window does not become active");
  }

  QtHands hands_;
  std::shared_ptr<widgets::QtToolkit> toolkit_;
  std::optional<QWidget> elsewhere_;
};

}  // namespace

std::unique_ptr<ViewPointPerson> makeViewPointPerson() { return std::make_unique<QtViewPointPerson>(); }

}  // namespace vlclientui::test
