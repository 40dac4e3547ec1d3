#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Desktop.h"
#include "Interpreter.h"
#include "contracts/controls/Form.h"
#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "host/Compose.h"

namespace vlclientui::python {

/// The library on one thread: its adapters, and the functions that act in a person's place. What was made in
/// a session belongs to its thread, and calls from another one are refused.
class Session : public std::enable_shared_from_this<Session> {
 public:
  using Surfaces = std::shared_ptr<headless::HeadlessSurfaceFactory>;

  /// The new session of the calling thread, in place of the one before. The thread keeps it.
  /// @param surfaces of the form engine; on real windows their twins.
  /// @param desktop of real windows; null without.
  /// @throws RuntimeFailure when the platform lacks an adapter.
  static std::shared_ptr<Session> start(host::ComposedHost host, Surfaces surfaces,
                                        std::shared_ptr<Desktop> desktop = nullptr);

  /// What every call begins with. @throws RuntimeFailure on another thread, after the end and when another
  /// session was started on this thread since.
  void use();
  [[nodiscard]] bool isCurrent() const;
  /// Takes the adapters from the thread. What was made fails from then on.
  void end();

  [[nodiscard]] const host::ComposedHost& host() const { return host_; }
  [[nodiscard]] bool isHeadless() const { return desktop_ == nullptr; }
  /// @throws RuntimeFailure on real windows.
  [[nodiscard]] headless::HeadlessToolkit& headlessToolkit() const;
  [[nodiscard]] headless::HeadlessSurfaceFactory& surfaces() const { return *surfaces_; }

  /// @throws RuntimeFailure without windows.
  [[nodiscard]] Desktop& desktop() const;

  void answerMessage(MessageAnswer answer);
  /// @param file of this system.
  void chooseFile(const std::string& file);
  [[nodiscard]] WindowHandle addHostWindow(const std::string& title);

  /// The function acts in the next modal window.
  void awaitWindow(py::function visit) { visits_.push_back(referenceTo(visit)); }
  void forgetVisits() { const auto forgotten = std::exchange(visits_, {}); }
  /// The function acts in each separate window of the form engine; none for no function.
  void awaitInformation(const py::object& visit);
  /// Whether somebody awaits a separate window of the form engine.
  [[nodiscard]] bool hasInformationVisit() const { return information_ != nullptr; }
  /// Whether somebody awaits a window.
  [[nodiscard]] bool hasVisit() const { return !visits_.empty(); }
  /// Runs the next function in the window. What it raises goes to whoever showed the window. Without the
  /// lock.
  void visit(Form& form);
  void visitInformation(const headless::HeadlessWindow& window);

  /// Lets an object of the library go: here and now on its own thread, else at the next call there.
  void letGo(std::shared_ptr<void> object);

 private:
  Session(host::ComposedHost host, Surfaces surfaces, std::shared_ptr<Desktop> desktop);
  void awaitNextWindow();
  void watchDesktop();
  void forgetFunctions();

  host::ComposedHost host_;
  Surfaces surfaces_;
  std::shared_ptr<Desktop> desktop_;
  std::thread::id thread_ = std::this_thread::get_id();
  std::deque<Reference> visits_;
  Reference information_;
  std::mutex mutex_;
  std::vector<std::shared_ptr<void>> left_;  ///< by other threads
};

using SessionPtr = std::shared_ptr<Session>;

/// An object of the library with the session that it belongs to.
template <class Type>
class Held {
 public:
  Held(SessionPtr session, std::shared_ptr<Type> object)
      : session_(std::move(session)), object_(std::move(object)) {}
  Held(Held&&) noexcept = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Held& operator=(Held&&) = delete;
  ~Held() {
    if (object_) session_->letGo(std::move(object_));
  }

  [[nodiscard]] const SessionPtr& session() const { return session_; }
  [[nodiscard]] const std::shared_ptr<Type>& object() const { return object_; }
  /// For a call. @throws RuntimeFailure as Session::use.
  [[nodiscard]] const std::shared_ptr<Type>& use() const {
    session_->use();
    return object_;
  }

 private:
  SessionPtr session_;
  std::shared_ptr<Type> object_;
};

/// The session of the calling thread. @throws RuntimeFailure without one.
[[nodiscard]] SessionPtr currentSession();

}  // namespace vlclientui::python
