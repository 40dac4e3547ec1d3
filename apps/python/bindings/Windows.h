#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Session.h"

/// Windows, controls and pages as Python sees them: they find what they stand for anew at each use, so that
/// one that has gone is a failure.
namespace vlclientui::python {

class Page;
class ControlView;

/// A loaded form, until its window closes.
class Window {
 public:
  Window(SessionPtr session, Form& form);

  [[nodiscard]] bool isOpen() const;
  /// @throws RuntimeFailure when it has closed.
  [[nodiscard]] std::shared_ptr<Form> form() const;
  [[nodiscard]] const SessionPtr& session() const { return session_; }
  /// Also one that stands on a hosted control. @throws RuntimeFailure when there is none of that name.
  [[nodiscard]] ControlView control(const std::string& name) const;
  [[nodiscard]] std::vector<ControlView> controls() const;
  /// The pages of the form engine that stand in the window now.
  [[nodiscard]] std::vector<Page> pages() const;

 private:
  SessionPtr session_;
  std::weak_ptr<Form> form_;
  std::uint64_t windowNumber_;
};

/// One control of a window.
class ControlView {
 public:
  ControlView(Window window, std::string name) : window_(std::move(window)), name_(std::move(name)) {}

  [[nodiscard]] const Window& window() const { return window_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  /// The control, and the form that keeps it meanwhile. @throws RuntimeFailure when either has gone.
  [[nodiscard]] std::shared_ptr<Control> control() const;
  /// @throws RuntimeFailure (TypeMismatch) for a control of another kind.
  template <class Kind>
  [[nodiscard]] std::shared_ptr<Kind> as(const char* can) const;

 private:
  [[noreturn]] void failKind(const char* can) const;

  Window window_;
  std::string name_;
};

/// A page of the form engine: fields, a list or a tree. On real windows it is the twin of what is shown.
class Page {
 public:
  /// @param form that it stands in; null for a window of its own.
  Page(SessionPtr session, headless::HeadlessSurface& surface, const std::shared_ptr<Form>& form = nullptr)
      : session_(std::move(session)), surface_(&surface), form_(form) {}

  /// @throws RuntimeFailure when it has gone.
  [[nodiscard]] headless::HeadlessSurface& surface() const;
  [[nodiscard]] bool isOpen() const;
  /// The same when a person has turned to it: the control that had the focus has lost it, and handlers of
  /// that may have taken the page away.
  [[nodiscard]] headless::HeadlessSurface& turnedTo() const;

 private:
  SessionPtr session_;
  headless::HeadlessSurface* surface_;
  std::weak_ptr<Form> form_;
};

template <class Kind>
std::shared_ptr<Kind> ControlView::as(const char* can) const {
  auto found = std::dynamic_pointer_cast<Kind>(control());
  if (!found) failKind(can);
  return found;
}

}  // namespace vlclientui::python
