#include "contracts/controls/PictureButton.h"

#include <utility>

namespace vlclientui {

PictureButton::PictureButton(ControlContainer& container, std::string name)
    : Button(container, std::move(name), "", ControlKind::PictureButton) {}

void PictureButton::setMarked(bool marked) {
  marked_ = marked;
  changed.raise(Aspect::CheckState);
}

}  // namespace vlclientui
