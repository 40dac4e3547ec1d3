#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "headless/HeadlessToolkit.h"

namespace vlclientui::test {

/// The toolkit in memory, which also records in order what is done with windows: each form that is loaded and
/// released, and the calls that embed a window in another. Windows go by name: that of the form, or the name
/// that the test gave.
class RecordingToolkit : public headless::HeadlessToolkit {
 public:
  std::vector<std::string> calls;
  std::string failAt;                              ///< beginning of the calls that throw
  std::function<void(const std::string&)> onCall;  ///< told each call, before it may throw
  std::map<std::string, WindowRect> rects;         ///< by name, of windows that have no size in memory

  /// Adds a window of the host that goes by this name.
  WindowHandle addNamedWindow(const std::string& name, const WindowRect& rect = {});

  void letPendingEventsRun() override;
  void createView(Form& form) override;
  void destroyView(Form& form) override;
  void runModal(Form& form) override;
  std::optional<WindowRect> windowRect(WindowHandle window) override;
  std::int32_t styleOf(WindowHandle window) override;
  void setStyle(WindowHandle window, std::int32_t style) override;
  WindowHandle setParent(WindowHandle window, WindowHandle parent) override;
  void showWindow(WindowHandle window, std::int32_t mode) override;

 private:
  void log(const std::string& call);
  [[nodiscard]] std::string nameOf(WindowHandle window) const;

  std::map<WindowHandle, std::string> names_;
};

}  // namespace vlclientui::test
