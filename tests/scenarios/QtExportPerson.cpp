#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>

#include "engine/Engine.h"
#include "scenarios/ExportPerson.h"
#include "scenarios/QtHands.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"
#include "widgets/ReadableColors.h"

namespace vlclientui::test {

namespace {

/// Acts on the real widgets by synthesized keys and clicks.
class QtExportPerson : public ExportPerson {
 public:
  void equip(Platform& platform) override {
    system_ = platform.system;
    const auto toolkit = std::make_shared<widgets::QtToolkit>(platform.system);
    platform.toolkit = toolkit;
    platform.plexa = std::make_shared<engine::EngineFactory>(
        platform.xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
  }

  void whenWindowAppears(std::function<void()> visit) override { hands_.whenWindowAppears(std::move(visit)); }
  void answerQuestion(MessageAnswer answer) override { hands_.answerQuestion(answer); }
  void chooseFile(const std::string& path) override {
    const QString native = QString::fromStdString(system_->nativePath(path));
    QDir().mkpath(QFileInfo(native).path());
    hands_.chooseFile(native);
  }

  void type(const std::string& box, const std::string& text) override {
    hands_.type(hands_.find<QLineEdit>(box), text);
  }
  void enter(const std::string& box) override { hands_.enter(hands_.find<QLineEdit>(box)); }
  void pressTab() override { hands_.press(Qt::Key_Tab); }
  void pressEnter() override { hands_.press(Qt::Key_Return); }
  void pressEscape() override { hands_.press(Qt::Key_Escape); }
  void pick(const std::string& list, const std::string& entry) override {
    hands_.pick(hands_.find<QComboBox>(list), entry);
  }
  void click(const std::string& name) override { hands_.click(name); }
  void closeByFrame() override { hands_.closeByFrame(); }

  bool windowIsOpen() const override { return hands_.windowIsOpen(); }
  std::string caption() const override { return hands_.caption(); }
  std::string text(const std::string& name) const override {
    const auto* const edit = qobject_cast<const QLineEdit*>(&hands_.find<QWidget>(name));
    if (!edit) return hands_.find<QComboBox>(name).currentText().toStdString();
    const std::string shown = edit->text().toStdString();
    return name == "uiTxtFileName" ? system_->logicPath(shown) : shown;
  }
  std::vector<std::string> entries(const std::string& list) const override {
    const auto& box = hands_.find<QComboBox>(list);
    std::vector<std::string> texts;
    for (int i = 0; i < box.count(); ++i) texts.push_back(box.itemText(i).toStdString());
    return texts;
  }
  std::string toolTip(const std::string& name) const override {
    return hands_.find<QWidget>(name).toolTip().toStdString();
  }
  std::string complaint(const std::string& box) const override {
    const auto& label = hands_.find<QLabel>(box + "Complaint");
    return label.isVisible() ? label.text().toStdString() : std::string();
  }
  bool isRed(const std::string& box) const override {
    const QPalette& palette = hands_.find<QLineEdit>(box).palette();
    return palette.color(QPalette::Text) == widgets::complaintColor(palette.color(QPalette::Base));
  }
  bool isEnabled(const std::string& name) const override { return hands_.find<QWidget>(name).isEnabled(); }
  std::string focus() const override {
    const QWidget* const focused = hands_.window().focusWidget();
    return focused && focused != &hands_.window() ? focused->objectName().toStdString() : std::string();
  }
  std::vector<std::string> messages() const override { return hands_.messages(); }
  std::vector<std::string> saveDialogs() const override { return hands_.fileDialogs(); }

 private:
  QtHands hands_;
  std::shared_ptr<System> system_;
};

}  // namespace

std::unique_ptr<ExportPerson> makeExportPerson() { return std::make_unique<QtExportPerson>(); }

}  // namespace vlclientui::test
