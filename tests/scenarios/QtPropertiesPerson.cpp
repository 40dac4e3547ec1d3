#include "scenarios/QtPropertiesPerson.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

#include "engine/Engine.h"
#include "widgets/PageView.h"
#include "widgets/QtSurface.h"

namespace vlclientui::test {

namespace {

/// A text without the marks of its keys.
QString unmarked(const QString& text) {
  QString read;
  for (decltype(text.size()) at = 0; at < text.size(); ++at) {
    if (text[at] == QLatin1Char('&') && at + 1 < text.size()) ++at;
    read += text[at];
  }
  return read;
}

QString labelOf(const QLabel& label, const QWidget& row) {
  if (const auto* const button = row.findChild<QAbstractButton*>()) {
    if (!button->text().isEmpty()) return unmarked(button->text());
  }
  QString text = label.text();
  if (text.endsWith(QLatin1Char(':'))) text.chop(1);
  return label.buddy() ? unmarked(text) : text;
}

/// A dash stands for nothing.
QString readOnlyText(const QLabel& label) {
  return label.text() == QStringLiteral("\u2013") ? QString() : label.text();
}

QString editedText(const QWidget& row) {
  if (const auto* const box = row.findChild<QCheckBox*>()) {
    return box->isChecked() ? QStringLiteral("Yes") : QStringLiteral("No");
  }
  if (const auto* const edit = row.findChild<QLineEdit*>()) return edit->text();
  if (const auto* const edit = row.findChild<QPlainTextEdit*>()) return edit->toPlainText();
  if (const auto* const box = row.findChild<QComboBox*>()) return box->currentText();
  return {};
}

bool isComplaint(const QLabel& label) { return label.objectName().endsWith(QLatin1String("_complaint")); }

QString unitOf(const QWidget& row) {
  for (const auto* const label : row.findChildren<QLabel*>()) {
    if (!isComplaint(*label)) return label->text();
  }
  return {};
}

std::string valueOf(const QWidget& row) {
  if (const auto* const label = qobject_cast<const QLabel*>(&row)) return readOnlyText(*label).toStdString();
  const QString text = editedText(row);
  const QString unit = unitOf(row);
  return (text.isEmpty() || unit.isEmpty() ? text : text + QLatin1Char(' ') + unit).toStdString();
}

}  // namespace

void QtPropertiesPerson::equip(Platform& platform) {
  system_ = platform.system;
  toolkit_ = std::make_shared<widgets::QtToolkit>(platform.system);
  platform.toolkit = toolkit_;
  platform.plexa = std::make_shared<engine::EngineFactory>(
      platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit_));
}

WindowHandle QtPropertiesPerson::hostWindow() {
  if (host_) return toolkit_->windows().handleOf(host_.get());
  host_ = std::make_unique<QWidget>();
  new QHBoxLayout(host_.get());
  host_->resize(1200, 700);
  host_->show();
  host_->activateWindow();
  QtHands::need(QTest::qWaitForWindowActive(host_.get()), "the host's window does not become active");
  return toolkit_->windows().handleOf(host_.get());
}

void QtPropertiesPerson::lookAt(Form& page) {
  QWidget* const view = toolkit_->viewOf(page);
  QtHands::need(view, "the page has no window");
  if (host_->layout()->indexOf(view) < 0) host_->layout()->addWidget(view);
  hands_.lookAt(*view);
  settle();
}

void QtPropertiesPerson::settle() { QApplication::processEvents(); }

void QtPropertiesPerson::chooseFile(const std::string& path) {
  hands_.chooseFile(QString::fromStdString(system_->nativePath(path)));
}

void QtPropertiesPerson::click(const std::string& button) {
  hands_.click(button);
  settle();
}

void QtPropertiesPerson::clickTab(const std::string& strip, const std::string& caption) {
  auto& bar = hands_.find<QTabBar>(strip);
  int tab = 0;
  while (tab < bar.count() && unmarked(bar.tabText(tab)) != QString::fromStdString(caption)) ++tab;
  QtHands::need(tab < bar.count(), "no tab " + caption);
  hands_.waitForWindow();
  QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab).center());
  settle();
}

void QtPropertiesPerson::typeField(const std::string& field, const std::string& text) {
  hands_.type(control<QLineEdit>(field), text);
}

void QtPropertiesPerson::pickInField(const std::string& field, const std::string& entry) {
  hands_.pick(control<QComboBox>(field), entry);
}

void QtPropertiesPerson::clickField(const std::string& button) {
  hands_.click(control<QAbstractButton>(button));
}

std::string QtPropertiesPerson::text(const std::string& name) const {
  const auto& widget = hands_.find<QWidget>(name);
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) return label->text().toStdString();
  return hands_.find<QLineEdit>(name).text().toStdString();
}

std::string QtPropertiesPerson::toolTip(const std::string& name) const {
  return hands_.find<QWidget>(name).toolTip().toStdString();
}

bool QtPropertiesPerson::isVisible(const std::string& name) const {
  return hands_.find<QWidget>(name).isVisible();
}

std::vector<QtPropertiesPerson::Field> QtPropertiesPerson::shownFields() const {
  std::vector<Field> shown;
  for (const widgets::PageView* const page : hands_.allShown<widgets::PageView>()) {
    for (const auto* const group : page->widget()->findChildren<QGroupBox*>()) {
      const auto* const rows = qobject_cast<const QFormLayout*>(group->layout());
      const QString before = group->title().isEmpty() ? QString() : group->title() + QLatin1Char('/');
      for (int row = 0; row < rows->rowCount(); ++row) {
        QWidget* const field = rows->itemAt(row, QFormLayout::FieldRole)->widget();
        const auto& label = dynamic_cast<QLabel&>(*rows->itemAt(row, QFormLayout::LabelRole)->widget());
        if (field->isVisible()) shown.push_back({(before + labelOf(label, *field)).toStdString(), field});
      }
    }
  }
  return shown;
}

std::vector<std::string> QtPropertiesPerson::fields() const {
  std::vector<std::string> seen;
  for (const Field& field : shownFields()) seen.push_back(field.name + "|" + valueOf(*field.row));
  return seen;
}

QWidget& QtPropertiesPerson::rowOf(const std::string& name) const {
  for (const Field& field : shownFields()) {
    if (field.name == name) return *field.row;
  }
  throw RuntimeFailure("no field " + name);
}

template <class Widget>
Widget& QtPropertiesPerson::control(const std::string& field) const {
  auto* const widget = rowOf(field).findChild<Widget*>();
  QtHands::need(widget, "nothing to act on in the field " + field);
  return *widget;
}

std::vector<std::string> QtPropertiesPerson::entriesOfField(const std::string& field) const {
  const auto& box = control<QComboBox>(field);
  std::vector<std::string> entries;
  for (int index = 0; index < box.count(); ++index) entries.push_back(box.itemText(index).toStdString());
  return entries;
}

bool QtPropertiesPerson::fieldIsOpen(const std::string& field) const {
  const QWidget& row = rowOf(field);
  return row.isEnabled() && !qobject_cast<const QLabel*>(&row);
}

std::string QtPropertiesPerson::complaint(const std::string& field) const {
  for (const auto* const label : rowOf(field).findChildren<QLabel*>()) {
    if (isComplaint(*label) && label->isVisible()) return label->text().toStdString();
  }
  return {};
}

/// A message with the program's own name as its title.
std::vector<std::string> QtPropertiesPerson::failures() const {
  const std::string title = QGuiApplication::applicationDisplayName().toStdString() + "|";
  std::vector<std::string> seen;
  for (const std::string& message : messages()) {
    if (message.starts_with(title)) seen.push_back(message.substr(title.size()));
  }
  return seen;
}

std::vector<std::string> QtPropertiesPerson::saveDialogs() const {
  std::vector<std::string> seen;
  for (const std::string& dialog : hands_.fileDialogs()) seen.push_back(dialog.substr(dialog.find('|') + 1));
  return seen;
}

std::unique_ptr<PropertiesPerson> makePropertiesPerson() { return std::make_unique<QtPropertiesPerson>(); }

}  // namespace vlclientui::test
