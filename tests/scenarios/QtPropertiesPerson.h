#pragma once

#include <QLabel>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "scenarios/PropertiesPerson.h"
#include "scenarios/QtHands.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

/// Acts on the real widgets by synthesized keys and clicks.
class QtPropertiesPerson : public virtual PropertiesPerson {
 public:
  void equip(Platform& platform) override;
  WindowHandle hostWindow() override;
  void lookAt(Form& page) override;
  void whenWindowAppears(std::function<void()> visit) override { hands_.whenWindowAppears(std::move(visit)); }
  void chooseFile(const std::string& path) override;

  void click(const std::string& button) override;
  void clickTab(const std::string& strip, const std::string& caption) override;
  void typeField(const std::string& field, const std::string& text) override;
  void pickInField(const std::string& field, const std::string& entry) override;
  void clickField(const std::string& button) override;
  void pressEscape() override { hands_.press(Qt::Key_Escape); }
  void closeByFrame() override { hands_.closeByFrame(); }

  [[nodiscard]] bool windowIsOpen() const override { return hands_.windowIsOpen(); }
  [[nodiscard]] std::string caption() const override { return hands_.caption(); }
  [[nodiscard]] std::string text(const std::string& name) const override;
  [[nodiscard]] std::string toolTip(const std::string& name) const override;
  [[nodiscard]] bool isVisible(const std::string& name) const override;
  [[nodiscard]] std::vector<std::string> fields() const override;
  [[nodiscard]] std::vector<std::string> entriesOfField(const std::string& field) const override;
  [[nodiscard]] bool fieldIsOpen(const std::string& field) const override;
  [[nodiscard]] std::string complaint(const std::string& field) const override;
  [[nodiscard]] std::vector<std::string> messages() const override { return hands_.messages(); }
  [[nodiscard]] std::vector<std::string> failures() const override;
  [[nodiscard]] std::vector<std::string> saveDialogs() const override;

 protected:
  [[nodiscard]] const QtHands& hands() const { return hands_; }
  /// What a click has posted is done.
  static void settle();

 private:
  /// A field of a page, as it shows.
  struct Field {
    std::string name;  ///< caption of the group and label
    QWidget* row;      ///< the value with its unit and what is complained of
  };

  [[nodiscard]] std::vector<Field> shownFields() const;
  [[nodiscard]] QWidget& rowOf(const std::string& field) const;
  template <class Widget>
  [[nodiscard]] Widget& control(const std::string& field) const;

  QtHands hands_;
  std::shared_ptr<const System> system_;
  std::shared_ptr<widgets::QtToolkit> toolkit_;
  std::unique_ptr<QWidget> host_;
};

}  // namespace vlclientui::test
