#pragma once

#include <string>

#include "contracts/controls/Controls.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A button that shows a picture and no caption. Code can mark it, which changes its look; a click does not
/// change the mark.
class PictureButton : public Button {
 public:
  /// Not marked. @param container outlives it. @param name unique there.
  PictureButton(ControlContainer& container, std::string name);
  /// Whether it has the look of a mark.
  [[nodiscard]] bool marked() const { return marked_; }
  /// Raises nothing.
  void setMarked(bool marked);

 private:
  bool marked_ = false;
};

}  // namespace vlclientui
#pragma GCC visibility pop
