#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contracts/News.h"
#include "contracts/Platform.h"
#include "contracts/controls/Form.h"
#include "scenarios/Places.h"

namespace vlclientui::test {

/// Whom a call asks: windows and pages, or what knows no windows.
enum class Asked { Windows, Others };

/// Counts the calls that the library makes to the world outside, and does something in the middle of one.
class Strike {
 public:
  /// Counts from here on. @param at the call to strike in, from 1; 0 for none.
  void arm(std::size_t at, std::function<void()> deed);
  /// Calls from outside the library and calls of the deed itself are not counted.
  void disarm() { armed_ = false; }
  void call(Asked asked = Asked::Windows);
  /// Of the calls to others than windows, none is worth striking in.
  void spareOthers(bool spares) { sparesOthers_ = spares; }
  /// A person's next act: calls from the same place in another act are another matter.
  void nextAct() {
    ++act_;
    if (tellsAct_) tellsAct_();
  }
  /// @param told at each act; null for nobody.
  void tellActsTo(void (*told)()) { tellsAct_ = told; }
  [[nodiscard]] std::size_t calls() const { return calls_; }
  /// The calls to strike in after a run that only counted: the first from each place, told by the stack and
  /// the act. All of them with VLCLIENTUI_SWEEP=every in the environment.
  [[nodiscard]] const std::vector<std::size_t>& worthStriking() const { return worthStriking_; }
  [[nodiscard]] bool struck() const { return struck_; }

 private:
  void see(Asked asked);

  CallerPlaces seen_;
  std::vector<std::size_t> worthStriking_;
  std::size_t calls_ = 0;
  std::size_t at_ = 0;
  std::uint64_t act_ = 0;
  void (*tellsAct_)() = nullptr;
  bool armed_ = false;
  bool sparesOthers_ = false;
  bool struck_ = false;
  std::function<void()> deed_;
};

/// Acts of a person in a modal window, in order; acts after the window has gone are dropped.
using Acts = std::vector<std::function<void(Form&)>>;

/// How one window system runs a modal window with a script inside.
using ModalRunner = std::function<void(Form& form, const std::function<void()>& script)>;

/// The toolkit before another one: each call is counted first. Boxes and file dialogs answer themselves.
class StrikingToolkit final : public Toolkit, public NewsTeller {
 public:
  StrikingToolkit(std::shared_ptr<Toolkit> inner, Strike& strike, ModalRunner runner)
      : inner_(std::move(inner)), strike_(strike), runModal_(std::move(runner)) {}

  std::deque<Acts> visits;            ///< of the modal windows to come; without one a window closes at once
  std::string file;                   ///< what file dialogs give
  std::vector<std::string> failures;  ///< that reached the top-level handler
  Pointer pointer = Pointer::Default;

  std::optional<std::string> openFile(const FileDialog&) override { return called().file; }
  std::optional<std::string> saveFile(const FileDialog&) override { return called().file; }
  std::optional<FolderChoice> browseForFolder(const FolderDialog&) override {
    static_cast<void>(called());
    return FolderChoice{"\\\\silent", "silent"};
  }
  void setPointer(Pointer shown) override { called().pointer = shown; }
  void letPendingEventsRun() override { static_cast<void>(called()); }
  void setClipboardText(const std::string&) override { static_cast<void>(called()); }
  void tell(const std::string&) override { static_cast<void>(called()); }
  void createView(Form& form) override { called().inner_->createView(form); }
  void destroyView(Form& form) override { called().inner_->destroyView(form); }
  void runModal(Form& form) override;
  WindowHandle windowOf(const Form& form) override { return called().inner_->windowOf(form); }
  WindowHandle windowOf(const Control& control) override { return called().inner_->windowOf(control); }
  std::optional<WindowRect> windowRect(WindowHandle window) override {
    return called().inner_->windowRect(window);
  }
  std::int32_t styleOf(WindowHandle window) override { return called().inner_->styleOf(window); }
  void setStyle(WindowHandle window, std::int32_t style) override {
    called().inner_->setStyle(window, style);
  }
  WindowHandle setParent(WindowHandle window, WindowHandle parent) override {
    return called().inner_->setParent(window, parent);
  }
  void showWindow(WindowHandle window, std::int32_t mode) override {
    called().inner_->showWindow(window, mode);
  }
  std::vector<WindowHandle> childWindows(WindowHandle window) override {
    return called().inner_->childWindows(window);
  }
  std::string windowTitle(WindowHandle window, std::size_t limit) override {
    return called().inner_->windowTitle(window, limit);
  }
  bool isWindowEnabled(WindowHandle window) override { return called().inner_->isWindowEnabled(window); }
  void enableWindow(WindowHandle window, bool enabled) override {
    called().inner_->enableWindow(window, enabled);
  }
  // Plain getters, in which nothing can happen.
  std::int32_t twipsPerPixelX() const override { return inner_->twipsPerPixelX(); }
  std::int32_t twipsPerPixelY() const override { return inner_->twipsPerPixelY(); }
  void reportFailure(const std::string& description) override { failures.push_back(description); }

 protected:
  MessageAnswer doShowMessage(const MessageBox&) override;

 private:
  StrikingToolkit& called();

  std::shared_ptr<Toolkit> inner_;
  Strike& strike_;
  ModalRunner runModal_;
};

/// Engines before those of another factory: each call is counted first.
class StrikingPlexaFactory final : public PlexaFactory {
 public:
  StrikingPlexaFactory(std::shared_ptr<PlexaFactory> inner, Strike& strike)
      : inner_(std::move(inner)), strike_(strike) {}

  std::shared_ptr<Plexa> createPlexa() override;
  /// A person's act in the engine that was shown last; nothing without one.
  void raise(const PlexaEvent& event) const;
  [[nodiscard]] std::size_t alive() const;

 private:
  friend class StrikingPlexa;

  std::shared_ptr<PlexaFactory> inner_;
  Strike& strike_;
  std::vector<std::weak_ptr<Plexa>> made_;
  std::weak_ptr<Plexa> shown_;
};

}  // namespace vlclientui::test
