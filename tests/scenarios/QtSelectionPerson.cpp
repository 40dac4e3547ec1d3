#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <deque>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "scenarios/SelectionPerson.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"
#include "widgets/RowListView.h"

namespace vlclientui::test {

namespace {

constexpr int watchMilliseconds = 5;

/// Acts on the real widgets by synthesised keys and clicks. Whatever opens over the window is answered by a
/// timer, since the act that opened it has not returned then.
class QtSelectionPerson : public SelectionPerson {
 public:
  QtSelectionPerson() {
    QObject::connect(&watch_, &QTimer::timeout, [this] { answerWindowOnTop(); });
    watch_.start(watchMilliseconds);
  }

  void equip(Platform& platform) override {
    system_ = platform.system;
    toolkit_ = std::make_shared<widgets::QtToolkit>(platform.system);
    platform.toolkit = toolkit_;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit_));
  }

  void whenWindowAppears(std::function<void()> visit) override { visits_.push_back(std::move(visit)); }
  void whenInformationAppears(std::function<void()> visit) override { informationVisit_ = std::move(visit); }
  void chooseFile(const std::string& path) override {
    const QString native = QString::fromStdString(system_->nativePath(path));
    QDir().mkpath(QFileInfo(native).path());
    QFile file(native);
    need(file.open(QIODevice::WriteOnly), "cannot make " + path);
    files_.push_back(native);
  }

  void typeServer(const std::string& text) override {
    QLineEdit* const edit = serverBox().lineEdit();
    QTest::mouseClick(edit, Qt::LeftButton);
    edit->selectAll();
    QTest::keyClicks(edit, QString::fromStdString(text));
  }
  void pressEnterInServerBox() override { QTest::keyClick(serverBox().lineEdit(), Qt::Key_Return); }
  void pickServer(int index) override {
    QComboBox& box = serverBox();
    box.showPopup();
    QAbstractItemView* const entries = box.view();
    entries->setCurrentIndex(entries->model()->index(index, 0));
    QTest::keyClick(entries, Qt::Key_Return);
  }
  void clickRow(const std::string& name) override {
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, placeOfRow(name));
  }
  void doubleClickRow(const std::string& name) override {
    QWidget* const rows = list().viewport();
    const QPoint place = placeOfRow(name);
    QTest::mouseClick(rows, Qt::LeftButton, {}, place);
    QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
    QTest::mouseRelease(rows, Qt::LeftButton, {}, place);
  }
  void pressBackspaceInList() override { QTest::keyClick(&list(), Qt::Key_Backspace); }
  void pressEnterInList() override { QTest::keyClick(&list(), Qt::Key_Return); }
  void clickButton(const std::string& name) override {
    auto& button = find<QAbstractButton>(name);
    // A check box is sensitive on its mark and text only, which may be narrower than the widget.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
  void selectEntries(const std::vector<int>& indexes) override {
    auto& entries = find<QListWidget>("ListBox");
    Qt::KeyboardModifiers modifiers;
    for (const int index : indexes) {
      const QRect place = entries.visualItemRect(entries.item(index));
      QTest::mouseClick(entries.viewport(), Qt::LeftButton, modifiers, place.center());
      modifiers = Qt::ControlModifier;
    }
  }
  void pressCtrlF1InServerBox() override {
    QTest::mouseClick(serverBox().lineEdit(), Qt::LeftButton);
    QTest::keyClick(serverBox().lineEdit(), Qt::Key_F1, Qt::ControlModifier);
  }
  void closeByFrame() override { window_->close(); }

  bool windowIsOpen() const override { return window_ && window_->isVisible(); }
  std::string caption() const override { return window_->windowTitle().toStdString(); }
  std::vector<std::string> rows() const override {
    std::vector<std::string> names;
    for (int row = 0; row < list().model()->rowCount(); ++row) names.push_back(cell(row, 0));
    return names;
  }
  std::vector<std::string> cells(const std::string& name) const override {
    std::vector<std::string> texts;
    for (int column = 0; column < list().model()->columnCount(); ++column) {
      texts.push_back(cell(rowOf(name), column));
    }
    return texts;
  }
  std::vector<std::string> columns() const override {
    std::vector<std::string> titles;
    for (int column = 0; column < list().model()->columnCount(); ++column) {
      titles.push_back(list().model()->headerData(column, Qt::Horizontal).toString().toStdString());
    }
    return titles;
  }
  std::string serverText() const override { return serverBox().currentText().toStdString(); }
  std::vector<std::string> serverEntries() const override {
    std::vector<std::string> entries;
    for (int i = 0; i < serverBox().count(); ++i) entries.push_back(serverBox().itemText(i).toStdString());
    return entries;
  }
  std::string title() const override { return find<QLineEdit>("Desc").text().toStdString(); }
  std::vector<std::string> selectedList() const override {
    const auto& entries = find<QListWidget>("ListBox");
    std::vector<std::string> texts;
    for (int i = 0; i < entries.count(); ++i) texts.push_back(entries.item(i)->text().toStdString());
    return texts;
  }
  bool isEnabled(const std::string& name) const override { return find<QWidget>(name).isEnabled(); }
  bool isVisible(const std::string& name) const override { return find<QWidget>(name).isVisible(); }
  std::vector<std::string> messages() const override { return messages_; }
  std::vector<std::string> information() const override { return information_; }

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
  [[nodiscard]] QComboBox& serverBox() const { return find<QComboBox>("uiTxtBoxServerName"); }
  [[nodiscard]] widgets::RowListView& list() const {
    auto* const view = window_->findChild<widgets::RowListView*>();
    need(view, "no list is shown");
    return *view;
  }
  [[nodiscard]] std::string cell(int row, int column) const {
    return list().model()->index(row, column).data().toString().toStdString();
  }
  [[nodiscard]] int rowOf(const std::string& name) const {
    for (int row = 0; row < list().model()->rowCount(); ++row) {
      if (cell(row, 0) == name) return row;
    }
    throw RuntimeFailure("no row " + name);
  }
  [[nodiscard]] QPoint placeOfRow(const std::string& name) const {
    const QModelIndex index = list().model()->index(rowOf(name), 0);
    list().scrollTo(index);
    return list().visualRect(index).center();
  }

  void answerWindowOnTop() {
    auto* const top = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!top) return;
    if (auto* const box = qobject_cast<QMessageBox*>(top)) return answerMessage(*box);
    if (auto* const dialog = qobject_cast<QFileDialog*>(top)) return answerFileDialog(*dialog);
    if (top->objectName() == QLatin1String("ImageServicesDialogForm")) return runVisit(*top);
    if (window_ && top != window_) readInformation(*top);
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
    box.accept();
  }
  void answerFileDialog(QFileDialog& dialog) {
    if (files_.empty()) return dialog.reject();
    dialog.selectFile(files_.front());
    files_.pop_front();
    QMetaObject::invokeMethod(&dialog, "accept");
  }
  void readInformation(QDialog& window) {
    information_.clear();
    for (const auto* const group : window.findChildren<QGroupBox*>()) readGroup(*group);
    if (informationVisit_) informationVisit_();
    window.close();
  }
  void readGroup(const QGroupBox& group) {
    const auto* const form = qobject_cast<const QFormLayout*>(group.layout());
    for (int row = 0; form && row < form->rowCount(); ++row) {
      const QLayoutItem* const label = form->itemAt(row, QFormLayout::LabelRole);
      const QLayoutItem* const field = form->itemAt(row, QFormLayout::FieldRole);
      if (!label || !field) continue;
      information_.push_back((textOf(*label) + QLatin1Char('|') + textOf(*field)).toStdString());
    }
  }
  static QString textOf(const QLayoutItem& item) {
    const auto* const label = qobject_cast<const QLabel*>(const_cast<QLayoutItem&>(item).widget());
    return label ? label->text() : QString();
  }

  QTimer watch_;
  std::shared_ptr<System> system_;
  std::shared_ptr<widgets::QtToolkit> toolkit_;
  QPointer<QDialog> window_;
  std::deque<std::function<void()>> visits_;
  std::function<void()> informationVisit_;
  std::deque<QString> files_;
  std::vector<std::string> messages_;
  std::vector<std::string> information_;
};

}  // namespace

std::unique_ptr<SelectionPerson> makeSelectionPerson() { return std::make_unique<QtSelectionPerson>(); }

}  // namespace vlclientui::test
