#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <deque>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "scenarios/ExportPerson.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

namespace {

constexpr int watchMilliseconds = 5;

/// Acts on the real widgets by synthesised keys and clicks. Whatever opens over the window is answered by a
/// timer, since the act that opened it has not returned then.
class QtExportPerson : public ExportPerson {
 public:
  QtExportPerson() {
    QObject::connect(&watch_, &QTimer::timeout, [this] { answerWindowOnTop(); });
    watch_.start(watchMilliseconds);
  }

  void equip(Platform& platform) override {
    system_ = platform.system;
    const auto toolkit = std::make_shared<widgets::QtToolkit>(platform.system);
    platform.toolkit = toolkit;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
  }

  void whenWindowAppears(std::function<void()> visit) override { visits_.push_back(std::move(visit)); }
  void answerQuestion(MessageAnswer answer) override { answers_.push_back(answer); }
  void chooseFile(const std::string& path) override {
    const QString native = QString::fromStdString(system_->nativePath(path));
    QDir().mkpath(QFileInfo(native).path());
    files_.push_back(native);
  }

  void type(const std::string& box, const std::string& text) override {
    auto& edit = find<QLineEdit>(box);
    enter(box);
    edit.selectAll();
    if (text.empty()) QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, QString::fromStdString(text));
  }
  void enter(const std::string& box) override {
    waitForWindow();
    QTest::mouseClick(&find<QLineEdit>(box), Qt::LeftButton);
  }
  void pressTab() override { press(Qt::Key_Tab); }
  void pressEnter() override { press(Qt::Key_Return); }
  void pressEscape() override { press(Qt::Key_Escape); }
  void pick(const std::string& list, const std::string& entry) override {
    auto& box = find<QComboBox>(list);
    const int index = box.findText(QString::fromStdString(entry));
    need(index >= 0, "no entry " + entry);
    waitForWindow();
    QTest::mouseClick(&box, Qt::LeftButton);
    QAbstractItemView* const entries = box.view();
    entries->setCurrentIndex(entries->model()->index(index, 0));
    QTest::keyClick(entries, Qt::Key_Return);
  }
  void click(const std::string& name) override {
    waitForWindow();
    auto& button = find<QAbstractButton>(name);
    // A check box is sensitive on its mark and text only, which may be narrower than the widget.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
  void closeByFrame() override { window_->close(); }

  bool windowIsOpen() const override { return window_ && window_->isVisible(); }
  std::string caption() const override { return window_->windowTitle().toStdString(); }
  std::string text(const std::string& name) const override {
    const auto& widget = find<QWidget>(name);
    const auto* const edit = qobject_cast<const QLineEdit*>(&widget);
    if (!edit) return find<QComboBox>(name).currentText().toStdString();
    const std::string shown = edit->text().toStdString();
    return name == "uiTxtFileName" ? system_->logicPath(shown) : shown;
  }
  std::vector<std::string> entries(const std::string& list) const override {
    const auto& box = find<QComboBox>(list);
    std::vector<std::string> texts;
    for (int i = 0; i < box.count(); ++i) texts.push_back(box.itemText(i).toStdString());
    return texts;
  }
  std::string toolTip(const std::string& name) const override {
    return find<QWidget>(name).toolTip().toStdString();
  }
  std::string complaint(const std::string& box) const override {
    const auto& label = find<QLabel>(box + "Complaint");
    return label.isVisible() ? label.text().toStdString() : std::string();
  }
  bool isRed(const std::string& box) const override {
    return find<QLineEdit>(box).palette().color(QPalette::Text) == QColor(255, 0, 0);
  }
  bool isEnabled(const std::string& name) const override { return find<QWidget>(name).isEnabled(); }
  std::string focus() const override {
    const QWidget* const focused = window_->focusWidget();
    return focused && focused != window_ ? focused->objectName().toStdString() : std::string();
  }
  std::vector<std::string> messages() const override { return messages_; }
  std::vector<std::string> saveDialogs() const override { return saveDialogs_; }

 private:
  static void need(bool condition, const std::string& complaint) {
    if (!condition) throw RuntimeFailure(complaint);
  }

  template <class Widget>
  [[nodiscard]] Widget& find(const std::string& name) const {
    need(window_, "no window is open");
    auto* const widget = window_->findChild<Widget*>(QString::fromStdString(name));
    need(widget, "no widget " + name);
    return *widget;
  }
  /// A person's first move into a window makes it active, as after a message that stood over it.
  void waitForWindow() const {
    if (!window_ || window_->isActiveWindow() || QApplication::activeModalWidget() != window_) return;
    window_->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(window_));
  }
  void press(Qt::Key key) {
    waitForWindow();
    QWidget* const focused = window_->focusWidget();
    QTest::keyClick(focused ? focused : window_.data(), key);
  }

  void answerWindowOnTop() {
    auto* const top = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!top) return;
    if (auto* const box = qobject_cast<QMessageBox*>(top)) return answerMessage(*box);
    if (auto* const dialog = qobject_cast<QFileDialog*>(top)) return answerFileDialog(*dialog);
    if (top->objectName() == QLatin1String("ExportDialogForm")) runVisit(*top);
  }
  /// The visit runs outside the timer's event, since a timer does not fire again inside its own.
  void runVisit(QDialog& window) {
    if (visits_.empty()) return;
    QTimer::singleShot(
        0, &window, [this, &window, visit = std::exchange(visits_.front(), nullptr)] { run(window, visit); });
    visits_.pop_front();
  }
  void run(QDialog& window, const std::function<void()>& visit) {
    window_ = &window;
    try {
      visit();
    } catch (const std::exception& failure) {
      ADD_FAILURE() << failure.what();
    }
    if (windowIsOpen()) closeByFrame();
  }
  void answerMessage(QMessageBox& box) {
    messages_.push_back((box.windowTitle() + QLatin1Char('|') + box.text()).toStdString());
    const bool asks = box.standardButtons().testFlag(QMessageBox::Cancel);
    std::optional<MessageAnswer> answer;
    if (asks && !answers_.empty()) {
      answer = answers_.front();
      answers_.pop_front();
    }
    box.button(answer == MessageAnswer::Cancel ? QMessageBox::Cancel : QMessageBox::Ok)->click();
  }
  void answerFileDialog(QFileDialog& dialog) {
    saveDialogs_.push_back(
        (dialog.windowTitle() + QLatin1Char('|') + dialog.nameFilters().join(QLatin1Char(';')))
            .toStdString());
    if (files_.empty()) return dialog.reject();
    dialog.selectFile(files_.front());
    files_.pop_front();
    QMetaObject::invokeMethod(&dialog, "accept");
  }

  QTimer watch_;
  std::shared_ptr<System> system_;
  QPointer<QDialog> window_;
  std::deque<std::function<void()>> visits_;
  std::deque<MessageAnswer> answers_;
  std::deque<QString> files_;
  std::vector<std::string> messages_;
  std::vector<std::string> saveDialogs_;
};

}  // namespace

std::unique_ptr<ExportPerson> makeExportPerson() { return std::make_unique<QtExportPerson>(); }

}  // namespace vlclientui::test
