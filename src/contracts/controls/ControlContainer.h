#pragma once

#include <string_view>
#include <vector>

#include "contracts/controls/Control.h"

namespace vlclientui {

/// What holds controls: a form, or a hosted control standing on one. Controls enter in the order of their
/// making, which is the tab order.
class ControlContainer {
 public:
  ControlContainer() = default;
  ControlContainer(const ControlContainer&) = delete;
  ControlContainer& operator=(const ControlContainer&) = delete;
  virtual ~ControlContainer();

  [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
  /// Null when there is none of that name here; hosted controls are not searched.
  [[nodiscard]] Control* findControl(std::string_view name) const;
  /// The form at the top of the chain of containers; null when there is none.
  [[nodiscard]] virtual Form* topForm() = 0;

  /// Any key but Tab, pressed while a control in here holds the focus; raised before the control's own
  /// keyDown, on the outermost container first.
  Event<const KeyEvent&> keyPreview;
  virtual void previewKey(const KeyEvent& key);

 protected:
  /// The controls go their own way: none of them knows this container any more.
  void releaseControls();

 private:
  friend class Control;

  std::vector<Control*> controls_;
};

}  // namespace vlclientui
