#pragma once

#include <string>
#include <vector>

#include "support/ViewPointFixture.h"
#include "viewpoint/ViewPoint.h"
#include "viewpoint/ViewPointDialogForm.h"

namespace vlclientui::test {

/// A window of either class over the fake service, not loaded yet.
template <class Window>
class SteeringTest : public ViewPointFixture {
 protected:
  SteeringTest() { window.myImageServiceObject = service; }

  [[nodiscard]] ViewPointSteering::Controls& shown() { return window.controls(); }
  void click(const std::string& name) {
    window.load();
    auto* const button = dynamic_cast<Button*>(window.findControl(name));
    ASSERT_TRUE(button) << name;
    button->userClicks();
  }
  /// The texts of both boxes, with a bar between.
  [[nodiscard]] std::string boxes() { return shown().uiTxtBoxX.text() + "|" + shown().uiTxtBoxY.text(); }
  /// Names of the buttons that bear a mark.
  [[nodiscard]] std::vector<std::string> marks() {
    std::vector<std::string> marked;
    for (const Control* const control : static_cast<const ControlContainer&>(window).controls()) {
      const auto* const button = dynamic_cast<const PictureButton*>(control);
      if (button && button->marked()) marked.push_back(button->name());
    }
    return marked;
  }
  void typeX(const std::string& text) {
    shown().uiTxtBoxX.userFocuses();
    shown().uiTxtBoxX.userTypes(text);
  }
  void typeY(const std::string& text) {
    shown().uiTxtBoxY.userFocuses();
    shown().uiTxtBoxY.userTypes(text);
  }

  Window window{*toolkit};
};

using Marks = std::vector<std::string>;

}  // namespace vlclientui::test
