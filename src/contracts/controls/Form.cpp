#include "contracts/controls/Form.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"

namespace vlclientui {

namespace {

Control* firstFocusable(const ControlContainer& container) {
  for (Control* control : container.controls()) {
    if (control->canTakeFocus()) return control;
    const auto* inner = dynamic_cast<const ControlContainer*>(control);
    if (!inner || !control->visible() || !control->enabled()) continue;
    if (Control* found = firstFocusable(*inner)) return found;
  }
  return nullptr;
}

bool holds(const ControlContainer& container, const Control* searched) {
  for (const Control* control : container.controls()) {
    if (control == searched) return true;
    const auto* inner = dynamic_cast<const ControlContainer*>(control);
    if (inner && holds(*inner, searched)) return true;
  }
  return false;
}

/// Load and unload are not entered twice.
class Changing {
 public:
  explicit Changing(bool& changing) : changing_(changing) { changing_ = true; }
  Changing(const Changing&) = delete;
  Changing& operator=(const Changing&) = delete;
  ~Changing() { changing_ = false; }

 private:
  bool& changing_;
};

/// Counts the modal windows that are open on the thread.
class ModalShow {
 public:
  ModalShow() { ++count(); }
  ModalShow(const ModalShow&) = delete;
  ModalShow& operator=(const ModalShow&) = delete;
  ~ModalShow() { --count(); }

  static int& count() {
    thread_local int open = 0;
    return open;
  }
};

/// For destructors: a failure goes to the top-level handler, and one of that handler nowhere.
template <class Routine>
void reportsFailure(Toolkit& toolkit, Routine&& routine) noexcept {
  try {
    try {
      std::forward<Routine>(routine)();
    } catch (...) {
      toolkit.reportFailure(handledFailureText());
    }
  } catch (...) {
    endSilently("the top-level handler has failed", "Form");
  }
}

}  // namespace

Form::Form(Toolkit& toolkit, std::string formName) : toolkit_(toolkit), formName_(std::move(formName)) {}

Form::~Form() {
  if (loaded_) reportsFailure(toolkit_, [this] { toolkit_.destroyView(*this); });
}

void Form::setCaption(std::string caption) {
  caption_ = std::move(caption);
  captionChanged.raise();
}

void Form::load() {
  if (loaded_ || changing_) return;
  {
    const Changing changing(changing_);
    controlSet_ = buildControls();
    toolkit_.createView(*this);
    loaded_ = true;
    ++windowNumber_;
  }
  visited([this] { onLoad(); });
}

void Form::unload() {
  if (!loaded_ || changing_) return;
  const Visit keptAlive(*this);
  {
    const Changing changing(changing_);
    visited([this] { onUnload(); });
    toolkit_.destroyView(*this);
    loaded_ = false;
    ++windowNumber_;
  }
  show_ = nullptr;
  forgetControls();
}

void Form::forgetControls() {
  entered_ = false;
  focused_ = nullptr;
  notice_.clear();
  cancelButton_ = nullptr;
  defaultButton_ = nullptr;
  firstFocus_ = nullptr;
  keyPreview.disconnectAll();
  releaseControls();
  dropControls();
  retired_.push_back(std::move(controlSet_));
  releaseRetired();
}

Form::Show::Show(Form& form) : keptAlive_(form.weak_from_this().lock()), form_(form) {
  if (form.show_) throw RuntimeFailure(alreadyOnShow);
  form.show_ = this;
}

Form::Show::~Show() {
  if (form_.show_ != this) return;
  form_.show_ = nullptr;
  reportsFailure(form_.toolkit_, [this] { form_.unload(); });
}

void Form::Show::run() {
  if (form_.show_ != this) return;
  form_.load();
  const ModalShow shown;
  if (form_.show_ == this) form_.toolkit_.runModal(form_);
}

void Form::showModal() { Show(*this).run(); }

void Form::setNotice(std::string notice) {
  if (notice == notice_) return;
  notice_ = std::move(notice);
  noticeChanged.raise();
}

void Form::runClick(const std::function<void()>& click) {
  std::string reason;
  const int shows = ModalShow::count();
  // What ends in a window that the click has opened is told there.
  const SilenceListener listener([&reason, shows](const SilentEnd& end) {
    if (reason.empty() && ModalShow::count() == shows) reason = end.reason;
  });
  const auto messagesBefore = toolkit_.messageCount();
  click();
  if (loaded_ && toolkit_.messageCount() == messagesBefore) setNotice(std::move(reason));
}

void Form::moveTo(double left, double top) {
  load();
  left_ = left;
  top_ = top;
  placeChanged.raise();
}

void Form::userActivates() {
  if (loaded_) dispatch([this] { onActivate(); });
}

void Form::userEnters() {
  if (!loaded_ || std::exchange(entered_, true)) return;
  dispatch([this] { onEnter(); });
}

void Form::userLeaves() {
  if (!loaded_ || !std::exchange(entered_, false)) return;
  dispatch([this] {
    moveFocus(nullptr);
    if (loaded_) onLeave();
  });
}

void Form::userCloses() {
  if (!acceptsInput()) return;
  if (loaded_) tellOperation({Operation::Kind::Close, formName_, {}, {}});
  dispatch([this] { unload(); });
}

bool Form::userPressesEscape() {
  Button* const button = cancelButton_;
  if (button) button->userClicks();
  return button != nullptr;
}

bool Form::userPressesEnter() {
  if (defaultButton_ && defaultButton_->acceptsInput())
    tellOperation({Operation::Kind::Return, formName_, {}, {}});
  return clicksDefaultButton();
}

bool Form::clicksDefaultButton() {
  Button* const button = defaultButton_;
  if (button && button->acceptsInput()) button->clickUntold();
  return button != nullptr;
}

void Form::withoutInput(const std::function<void()>& action) {
  struct Block {
    explicit Block(int& count) : blocks(count) { ++blocks; }
    ~Block() { --blocks; }
    int& blocks;
  };
  const Block block(inputBlocks_);
  action();
}

void Form::showHostedControls() {
  const auto present = controls();
  for (Control* const control : present) {
    // A control that was told may have unloaded the form.
    if (!loaded_) return;
    if (auto* const hosted = dynamic_cast<HostedControl*>(control)) hosted->windowAppeared();
  }
}

void Form::userFocusesElsewhere() {
  if (!acceptsInput()) return;
  if (focused_) tellOperation({Operation::Kind::Leave, formName_, {}, {}});
  dispatch([this] {
    userEnters();
    moveFocus(nullptr);
  });
}

bool Form::focusLiesIn(const Control& control) const {
  if (!focused_) return false;
  if (focused_ == &control) return true;
  const auto* container = dynamic_cast<const ControlContainer*>(&control);
  return container && holds(*container, focused_);
}

void Form::windowAppeared(FirstFocus focus) {
  if (!loaded_) return;
  appear(focus);
  PersonInPlace* const person = PersonInPlace::ofThread();
  if (person && loaded_) person->windowAppeared(*this);
}

void Form::appear(FirstFocus focus) {
  dispatch([this, focus] {
    showHostedControls();
    if (loaded_) onActivate();
    if (!loaded_ || focused_ || focus == FirstFocus::LeftAlone) return;
    userEnters();
    if (!loaded_ || focused_) return;
    const bool chosen = firstFocus_ && firstFocus_->canTakeFocus();
    if (Control* first = chosen ? firstFocus_ : firstFocusable(*this)) moveFocus(first);
  });
}

void Form::windowLost() {
  focused_ = nullptr;
  entered_ = false;
}

void Form::windowGone() {
  ++windowNumber_;
  windowLost();
}

void Form::failUnloaded() const { failMissingObject("the window of " + formName_); }

void Form::moveFocus(Control* control) {
  if (control != focused_) holdControlsWhile([this, control] { passFocus(control); });
}

void Form::passFocus(Control* control) {
  Control* old = std::exchange(focused_, nullptr);
  if (old) old->lostFocus.raise();
  // The handler may have unloaded the form or moved the focus itself.
  if (!mayReceiveFocus(control)) return;
  userEnters();
  if (!mayReceiveFocus(control)) return;
  focused_ = control;
  control->changed.raise(Aspect::Focus);
  control->gotFocus.raise();
}

bool Form::mayReceiveFocus(const Control* control) const {
  return loaded_ && control && control->form() == this && !focused_ && control->canTakeFocus();
}

void Form::dispatch(const std::function<void()>& action) {
  // The visit ends before its failure is reported.
  const auto keptAlive = weak_from_this().lock();
  try {
    visited(action);
  } catch (const std::exception& failure) {
    toolkit_.reportFailure(failure.what());
  } catch (...) {
    toolkit_.reportFailure("Unknown failure");
  }
}

bool Form::visited(const std::function<void()>& routine, const RoutineName& name) {
  const Visit visit(*this);
  try {
    routine();
    return true;
  } catch (const WindowGone&) {
    endSilently("its window has gone", name);
    // The routine may have left the hourglass behind.
    toolkit_.setPointer(Pointer::Default);
    return false;
  }
}

void Form::holdControlsWhile(const std::function<void()>& action) {
  const auto keptAlive = weak_from_this().lock();
  beginEvent();
  try {
    action();
  } catch (...) {
    endEvent();
    throw;
  }
  endEvent();
}

void Form::endEvent() {
  --eventDepth_;
  releaseRetired();
}

void Form::forget(const Control& control) {
  if (focused_ == &control) focused_ = nullptr;
}

void Form::releaseRetired() {
  if (eventDepth_ == 0) std::exchange(retired_, {}).clear();
}

}  // namespace vlclientui
