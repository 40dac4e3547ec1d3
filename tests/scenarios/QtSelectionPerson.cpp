#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "engine/Engine.h"
#include "scenarios/QtHands.h"
#include "scenarios/SelectionPerson.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"
#include "widgets/RowListView.h"

namespace vlclientui::test {

namespace {

/// Acts on the real widgets by synthesized keys and clicks.
class QtSelectionPerson : public SelectionPerson {
 public:
  QtSelectionPerson() {
    hands_.whenOtherWindowAppears([this](QDialog& window) { readInformation(window); });
  }

  void equip(Platform& platform) override {
    system_ = platform.system;
    const auto toolkit = std::make_shared<widgets::QtToolkit>(platform.system);
    platform.toolkit = toolkit;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
  }

  void whenWindowAppears(std::function<void()> visit) override { hands_.whenWindowAppears(std::move(visit)); }
  void whenInformationAppears(std::function<void()> visit) override { informationVisit_ = std::move(visit); }
  void chooseFile(const std::string& path) override {
    const QString native = QString::fromStdString(system_->nativePath(path));
    QDir().mkpath(QFileInfo(native).path());
    QFile file(native);
    QtHands::need(file.open(QIODevice::WriteOnly), "cannot make " + path);
    hands_.chooseFile(native);
  }

  void typeServer(const std::string& text) override { hands_.type(*serverBox().lineEdit(), text); }
  void pressEnterInServerBox() override { QTest::keyClick(serverBox().lineEdit(), Qt::Key_Return); }
  void pickServer(int index) override {
    QComboBox& box = serverBox();
    box.showPopup();
    QAbstractItemView* const entries = box.view();
    entries->setCurrentIndex(entries->model()->index(index, 0));
    QTest::keyClick(entries, Qt::Key_Return);
  }
  void clickRow(const std::string& name) override {
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, placeOf(rowOf(name)));
  }
  void doubleClickRow(const std::string& name) override { doubleClickAt(placeOf(rowOf(name))); }
  void doubleClickLastRow(const std::string& name) override {
    int row = list().model()->rowCount() - 1;
    while (row > 0 && cell(row, 0) != name) --row;
    doubleClickAt(placeOf(row));
  }
  void pressBackspaceInList() override { QTest::keyClick(&list(), Qt::Key_Backspace); }
  void pressEnterInList() override { QTest::keyClick(&list(), Qt::Key_Return); }
  void clickButton(const std::string& name) override { hands_.click(name); }
  void selectEntries(const std::vector<int>& indexes) override {
    auto& entries = hands_.find<QListWidget>("ListBox");
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
  void closeByFrame() override { hands_.closeByFrame(); }

  bool windowIsOpen() const override { return hands_.windowIsOpen(); }
  std::string caption() const override { return hands_.caption(); }
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
  std::string title() const override { return hands_.find<QLineEdit>("Desc").text().toStdString(); }
  std::vector<std::string> selectedList() const override {
    const auto& entries = hands_.find<QListWidget>("ListBox");
    std::vector<std::string> texts;
    for (int i = 0; i < entries.count(); ++i) texts.push_back(entries.item(i)->text().toStdString());
    return texts;
  }
  bool isEnabled(const std::string& name) const override { return hands_.find<QWidget>(name).isEnabled(); }
  bool isVisible(const std::string& name) const override { return hands_.find<QWidget>(name).isVisible(); }
  std::vector<std::string> messages() const override { return hands_.messages(); }
  std::vector<std::string> information() const override { return information_; }

 private:
  [[nodiscard]] QComboBox& serverBox() const { return hands_.find<QComboBox>("uiTxtBoxServerName"); }
  [[nodiscard]] widgets::RowListView& list() const {
    auto* const view = hands_.window().findChild<widgets::RowListView*>();
    QtHands::need(view, "no list is shown");
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
  [[nodiscard]] QPoint placeOf(int row) const {
    const QModelIndex index = list().model()->index(row, 0);
    list().scrollTo(index);
    return list().visualRect(index).center();
  }
  void doubleClickAt(const QPoint& place) const {
    QWidget* const rows = list().viewport();
    QTest::mouseClick(rows, Qt::LeftButton, {}, place);
    QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
    QTest::mouseRelease(rows, Qt::LeftButton, {}, place);
  }

  void readInformation(const QDialog& window) {
    information_.clear();
    for (const auto* const group : window.findChildren<QGroupBox*>()) readGroup(*group);
    if (informationVisit_) informationVisit_();
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

  QtHands hands_;
  std::shared_ptr<System> system_;
  std::function<void()> informationVisit_;
  std::vector<std::string> information_;
};

}  // namespace

std::unique_ptr<SelectionPerson> makeSelectionPerson() { return std::make_unique<QtSelectionPerson>(); }

}  // namespace vlclientui::test
