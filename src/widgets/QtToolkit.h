#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contracts/News.h"
#include "contracts/System.h"
#include "contracts/Toolkit.h"
#include "widgets/PathTexts.h"
#include "widgets/ViewRegistry.h"
#include "widgets/WindowHandles.h"

namespace vlclientui::widgets {

class FormWindow;

/// The toolkit of hosts with a window system. The host has made its QApplication before and keeps it
/// longer; everything runs on that thread. Dialogs and messages stand over the host's active window.
class QtToolkit : public Toolkit, public NewsTeller {
 public:
  /// Shows native paths and uses this library's layouts.
  explicit QtToolkit(std::shared_ptr<const System> system);
  QtToolkit(std::shared_ptr<const System> system, PathTexts paths, ViewRegistry views);
  ~QtToolkit() override;

  [[nodiscard]] std::optional<std::string> openFile(const FileDialog& dialog) override;
  [[nodiscard]] std::optional<std::string> saveFile(const FileDialog& dialog) override;
  /// Starts at the user's home whatever the root: here no folder stands for the network.
  [[nodiscard]] std::optional<FolderChoice> browseForFolder(const FolderDialog& dialog) override;
  void setPointer(Pointer pointer) override;
  void letPendingEventsRun() override;
  void setClipboardText(const std::string& text) override;
  void tell(const std::string& news) override;

  /// @throws RuntimeFailure when there is no layout for the form or for a hosted control.
  void createView(Form& form) override;
  void destroyView(Form& form) override;
  /// Closes the form by its frame when the program quits meanwhile.
  void runModal(Form& form) override;

  [[nodiscard]] WindowHandle windowOf(const Form& form) override;
  [[nodiscard]] WindowHandle windowOf(const Control& control) override;
  [[nodiscard]] std::optional<WindowRect> windowRect(WindowHandle window) override;
  [[nodiscard]] std::int32_t styleOf(WindowHandle window) override;
  void setStyle(WindowHandle window, std::int32_t style) override;
  /// With a parent the window becomes a child widget, whatever its style says, and joins the parent's tab
  /// order; without one it is a window again.
  WindowHandle setParent(WindowHandle window, WindowHandle parent) override;
  void showWindow(WindowHandle window, std::int32_t mode) override;
  [[nodiscard]] std::vector<WindowHandle> childWindows(WindowHandle window) override;
  [[nodiscard]] std::string windowTitle(WindowHandle window, std::size_t limit) override;
  [[nodiscard]] bool isWindowEnabled(WindowHandle window) override;
  void enableWindow(WindowHandle window, bool enabled) override;

  [[nodiscard]] std::int32_t twipsPerPixelX() const override;
  [[nodiscard]] std::int32_t twipsPerPixelY() const override;
  void reportFailure(const std::string& description) override;

  /// What the windows tell in passing, for a host that has a place to show it.
  Event<const QString&> told;

  /// The window of a loaded form; null when it has none.
  [[nodiscard]] QWidget* viewOf(const Form& form) const;
  /// Names of a loaded form's controls without exactly one widget of the right kind.
  [[nodiscard]] std::vector<std::string> missingWidgets(const Form& form) const;
  /// The numbers of windows. To embed a page, a host passes handleOf(widget) to the dialog and finds the
  /// page's own widget by widgetOf, for a layout of its own.
  [[nodiscard]] WindowHandles& windows() { return windows_; }
  [[nodiscard]] const PathTexts& paths() const { return paths_; }
  /// The window to open a dialog over; null when none of the program's windows is active.
  [[nodiscard]] static QWidget* activeWindow();
  /// Runs a person's input to something in a window that is not a control, such as an engine's list, as its
  /// form demands: ignored while the form takes none, failures to reportFailure.
  void runAct(QWidget* window, const std::function<void()>& act);

 protected:
  MessageAnswer doShowMessage(const MessageBox& box) override;

 private:
  [[nodiscard]] std::optional<std::string> askForFile(const FileDialog& dialog);
  [[nodiscard]] std::optional<std::string> askForTarget(const FileDialog& dialog);
  [[nodiscard]] std::optional<FolderChoice> askForFolder(const FolderDialog& dialog);
  [[nodiscard]] FormWindow* formWindow(const Form& form) const;
  /// Replaces a window that was destroyed with one of the host.
  [[nodiscard]] FormWindow* standingWindow(const Form& form);

  std::shared_ptr<const System> system_;
  PathTexts paths_;
  ViewRegistry views_;
  WindowHandles windows_;
  std::map<Form*, QPointer<FormWindow>, std::less<>> formWindows_;
  bool pointerIsSet_ = false;
};

}  // namespace vlclientui::widgets
