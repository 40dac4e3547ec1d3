#pragma once

#include <string>

#include "contracts/controls/Controls.h"

namespace vlclientui {

/// A button that shows a picture and no caption, and that can bear a mark: a look of two values, of which the
/// code alone decides. A click does not change it.
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
