#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"
#include "support/TestSystem.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

/// A hosted control for tests, with one text box and the slot of an engine.
class SampleHosted : public HostedControl {
 public:
  explicit SampleHosted(ControlContainer& container);

  TextBox inner{*this, "inner"};
};

/// A form for tests with one control of each kind. What its controls raise stands in `log`.
class SampleForm : public Form {
 public:
  struct Controls {
    explicit Controls(SampleForm& form);

    Label caption;
    TextBox box;
    TypingCombo server;
    DropDown choice;
    vlclientui::ListBox list;
    CheckBox check;
    Button button;
    Button picture;
    SampleHosted hosted;
    Button accept;
    Button cancel;
    TabStrip tabs;
    TreeView tree;
    ReportList report;
    Frame frame;
  };

  explicit SampleForm(Toolkit& toolkit);
  ~SampleForm() override;

  [[nodiscard]] Controls& controls() const { return *controls_; }

  std::vector<std::string> log;
  std::function<void()> afterLoad;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override;

 private:
  void record(Control& control);

  std::shared_ptr<Controls> controls_;
};

/// Layouts of the sample form and of its hosted control.
[[nodiscard]] widgets::ViewRegistry sampleViews();

/// A toolkit on real widgets, and the sample form.
class WidgetTest : public testing::Test {
 protected:
  WidgetTest();

  /// Shows the form; the script acts on the open window, which is closed afterwards if it still stands.
  void show(const std::function<void()>& script);
  /// Acts on the next message box, then presses its button of that text; keeps its text in `messages`.
  void answerNextMessage(const QString& buttonText = QStringLiteral("OK"),
                         const std::function<void()>& meanwhile = {});

  template <class Widget = QWidget>
  [[nodiscard]] Widget& widget(const char* name) {
    auto* found = toolkit->viewOf(form)->findChild<Widget*>(QLatin1String(name));
    if (!found) throw std::runtime_error(name);
    return *found;
  }
  [[nodiscard]] SampleForm::Controls& controls() { return form.controls(); }
  std::vector<std::string> takeLog() { return std::exchange(form.log, {}); }

  std::shared_ptr<TestSystem> system;
  std::shared_ptr<widgets::QtToolkit> toolkit;
  SampleForm form;
  std::vector<QString> messages;
};

}  // namespace vlclientui::test
