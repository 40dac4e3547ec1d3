#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <optional>

#include "contracts/RuntimeFailure.h"
#include "scenarios/ViewPointPerson.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

namespace {

/// Acts on the real widgets by synthesised keys and clicks.
class QtViewPointPerson : public ViewPointPerson {
 public:
  std::shared_ptr<Toolkit> equip(const std::shared_ptr<const System>& system) override {
    toolkit_ = std::make_shared<widgets::QtToolkit>(system);
    return toolkit_;
  }
  void open(ViewPointSteering& window) override {
    window.load();
    toolkit_->showWindow(toolkit_->windowOf(window), showModeShow);
    window_ = toolkit_->viewOf(window);
    activate(*window_);
  }
  void click(const std::string& button) override {
    QTest::mouseClick(&find<QAbstractButton>(button), Qt::LeftButton);
  }
  void type(const std::string& box, const std::string& text) override {
    auto& edit = find<QLineEdit>(box);
    QTest::mouseClick(&edit, Qt::LeftButton);
    edit.selectAll();
    QTest::keyClicks(&edit, QString::fromStdString(text));
  }
  void pressEnter() override { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); }
  void closeByFrame() override { window_->close(); }
  void goElsewhere() override {
    elsewhere_.emplace().show();
    activate(*elsewhere_);
  }
  void comeBack() override { activate(*window_); }

  bool windowIsOpen() const override { return window_ && window_->isVisible(); }
  std::string caption() const override { return window_->windowTitle().toStdString(); }
  std::string text(const std::string& box) const override {
    return find<QLineEdit>(box).text().toStdString();
  }
  std::vector<std::string> marked() const override {
    std::vector<std::string> names;
    for (const char* const name : steeringButtons) {
      if (find<QAbstractButton>(name).isChecked()) names.emplace_back(name);
    }
    return names;
  }

 private:
  static void activate(QWidget& window) {
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) throw RuntimeFailure("the window does not become active");
  }
  template <class Kind>
  [[nodiscard]] Kind& find(const std::string& name) const {
    auto* const found = window_->findChild<Kind*>(QString::fromStdString(name));
    if (!found) throw RuntimeFailure("no widget " + name);
    return *found;
  }

  std::shared_ptr<widgets::QtToolkit> toolkit_;
  QPointer<QWidget> window_;
  std::optional<QWidget> elsewhere_;
};

}  // namespace

std::unique_ptr<ViewPointPerson> makeViewPointPerson() { return std::make_unique<QtViewPointPerson>(); }

}  // namespace vlclientui::test
