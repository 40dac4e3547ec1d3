#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/Toolkit.h"
#include "contracts/controls/Form.h"
#include "host/Compose.h"

namespace vlclientui::python {

/// What a session asks a real window system for. All of it runs on the thread of the windows.
class Desktop {
 public:
  /// What the session does meanwhile.
  struct Answers {
    std::function<bool()> awaitsWindow;     ///< whether somebody acts in the next modal window
    std::function<void(Form& form)> visit;  ///< lets them act; the form is closed afterwards
    std::function<bool()> isInterrupted;    ///< asked a few times a second: whether the program is to stop
  };

  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  [[nodiscard]] virtual host::ComposedHost compose(const host::HostOptions& options) = 0;
  virtual void watch(Answers answers) = 0;
  /// Answers the next message that asks; without one a person does.
  virtual void answerMessage(MessageAnswer answer) = 0;
  /// @param file native. Chooses it in the next file dialog.
  virtual void chooseFile(const std::string& file) = 0;
  /// A window of the host, shown; pages that are put into it fill it.
  [[nodiscard]] virtual WindowHandle addHostWindow(const host::ComposedHost& host,
                                                   const std::string& title) = 0;
  /// @throws RuntimeFailure when the form has no window, or the file cannot be written.
  virtual void savePicture(const Form& form, const std::string& file) = 0;
  /// Runs an action once the next modal window stands, and closes the window then.
  virtual void inNextWindow(std::function<void()> act) = 0;
  virtual void processEvents() = 0;
  /// Returns when the last window has closed; at once without any.
  virtual void run() = 0;
};

/// The desktop of this process, made at the first call. @throws RuntimeFailure without a display, and on
/// another thread than the first one.
[[nodiscard]] std::shared_ptr<Desktop> theDesktop();

}  // namespace vlclientui::python
