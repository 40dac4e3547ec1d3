#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "headless/HeadlessToolkit.h"

namespace vlclientui::test {

using Log = std::vector<std::string>;

/// A control made of controls, for tests: it tells when it is hidden.
class SampleHosted : public HostedControl {
 public:
  SampleHosted(ControlContainer* container, std::string name)
      : HostedControl(container, std::move(name), "SampleHosted") {}

  TextBox innerBox{*this, "innerBox"};
  Button innerButton{*this, "innerButton", "&Inner"};
  int hides = 0;
  std::function<void()> whenHidden;
  std::function<void()> whenShown;

 protected:
  void onShow() override {
    if (whenShown) whenShown();
  }
  void onHide() override {
    ++hides;
    if (whenHidden) whenHidden();
  }
};

/// A form with one control of each kind, for tests. Every event of every control is logged as it is raised;
/// `react` runs after the entry that it is set for.
class SampleForm : public Form {
 public:
  struct Controls {
    explicit Controls(SampleForm& form);
    ~Controls() { --*living_; }
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

   private:
    std::shared_ptr<int> living_;  ///< shared, since a released form's fields go before its controls

   public:
    Label label;
    TextBox box;
    TextBox otherBox;
    TypingCombo typing;
    DropDown drop;
    ListBox list;
    CheckBox check;
    Button button;
    Button picture;
    SampleHosted hosted;
  };

  explicit SampleForm(Toolkit& toolkit) : Form(toolkit, "SampleForm") {}

  Controls& controls() {
    load();
    return *controls_;
  }

  // Fields, which outlive the controls.
  Log log;
  std::shared_ptr<int> living = std::make_shared<int>(0);
  [[nodiscard]] int livingSets() const { return *living; }
  int loads = 0;
  int unloads = 0;
  std::function<void(const std::string&)> react;
  std::function<void()> whenUnloading;

 protected:
  std::shared_ptr<void> buildControls() override;
  void dropControls() override { controls_.reset(); }
  void onLoad() override { ++loads; }
  void onUnload() override {
    ++unloads;
    if (whenUnloading) whenUnloading();
  }

 private:
  void note(const std::string& entry) {
    log.push_back(entry);
    if (react) react(entry);
  }
  void watch(Control& control);

  std::shared_ptr<Controls> controls_;
};

inline SampleForm::Controls::Controls(SampleForm& form)
    : living_(form.living),
      label(form, "label", "Label"),
      box(form, "box"),
      otherBox(form, "otherBox"),
      typing(form, "typing"),
      drop(form, "drop"),
      list(form, "list"),
      check(form, "check", "Check"),
      button(form, "button", "&OK"),
      picture(form, "picture", "", ControlKind::PictureButton),
      hosted(&form, "hosted") {
  ++*living_;
}

inline void SampleForm::watch(Control& control) {
  const std::string name = control.name();
  control.gotFocus.connect([this, name] { note(name + " got focus"); });
  control.lostFocus.connect([this, name] { note(name + " lost focus"); });
  control.keyDown.connect([this, name](const KeyEvent& key) {
    note(name + " key " + std::to_string(key.keyCode) + "/" + std::to_string(key.shift));
  });
}

inline std::shared_ptr<void> SampleForm::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  Controls& set = *controls_;
  for (Control* const control : ControlContainer::controls()) watch(*control);
  for (Control* const control : set.hosted.controls()) watch(*control);
  set.box.change.connect([this] { note("box changed"); });
  set.otherBox.change.connect([this] { note("otherBox changed"); });
  set.typing.click.connect([this] { note("typing selected"); });
  set.typing.change.connect([this] { note("typing changed"); });
  set.drop.click.connect([this] { note("drop selected"); });
  set.list.click.connect([this] { note("list clicked"); });
  set.check.click.connect([this] { note("check clicked"); });
  set.button.click.connect([this] { note("button clicked"); });
  set.picture.click.connect([this] { note("picture clicked"); });
  set.hosted.innerButton.click.connect([this] { note("innerButton clicked"); });
  set.hosted.whenHidden = [this] { note("hosted hidden"); };
  set.hosted.keyPreview.connect(
      [this](const KeyEvent& key) { note("hosted previews " + std::to_string(key.keyCode)); });
  keyPreview.connect([this](const KeyEvent& key) { note("form previews " + std::to_string(key.keyCode)); });
  setCancelButton(&set.button);
  return controls_;
}

/// A loaded sample form on the toolkit in memory.
class SampleFormTest : public testing::Test {
 protected:
  SampleFormTest() { form.load(); }

  SampleForm::Controls& controls() { return form.controls(); }
  /// The log since it was last taken.
  Log takeLog() { return std::exchange(form.log, {}); }
  /// Runs `reaction` each time that `entry` is logged.
  void when(const std::string& entry, std::function<void()> reaction) {
    form.react = [entry, reaction = std::move(reaction)](const std::string& logged) {
      if (logged == entry) reaction();
    };
  }

  headless::HeadlessToolkit toolkit;
  SampleForm form{toolkit};
};

}  // namespace vlclientui::test
