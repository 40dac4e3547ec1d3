#pragma once

#include <string>

#include "contracts/controls/Controls.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A button that shows a picture and no caption. Code can mark it, which changes its look; a click does not
/// change the mark.
class PictureButton : public Button {
 public:
  PictureButton(ControlContainer& container, std::string name);
  [[nodiscard]] bool marked() const { return marked_; }
  /// Raises nothing.
  void setMarked(bool marked);

 private:
  bool marked_ = false;
};

}  // namespace vlclientui
#pragma GCC visibility pop
