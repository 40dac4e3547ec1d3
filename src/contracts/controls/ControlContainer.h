#pragma once

#include <string_view>
#include <vector>

#include "contracts/controls/Control.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// What holds controls: a form, or a hosted control standing on one. The order in which controls are added is
/// the tab order.
class ControlContainer {
 public:
  ControlContainer() = default;
  ControlContainer(const ControlContainer&) = delete;
  ControlContainer& operator=(const ControlContainer&) = delete;
  virtual ~ControlContainer();

  /// In the order of their making, which is the tab order. The pointers are good as long as the controls
  /// live.
  [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
  /// Null when no control here has that name; hosted controls are not searched.
  [[nodiscard]] Control* findControl(std::string_view name) const;
  /// The form at the top of the chain of containers; null without a form.
  [[nodiscard]] virtual Form* topForm() = 0;

  /// Any key but Tab, pressed while a control in here holds the focus; raised before the control's own
  /// keyDown, on the outermost container first.
  Event<const KeyEvent&> keyPreview;
  /// Raises keyPreview; a container inside another one has that one raise its own first.
  virtual void previewKey(const KeyEvent& key);

 protected:
  /// Lets the controls go: none of them knows this container any more.
  void releaseControls();

 private:
  friend class Control;

  std::vector<Control*> controls_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
