#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::headless {

/// The toolkit without a window system, for command lines and tests. Windows are entries in a table, boxes
/// are answered from queues, and a modal show hands its form to a script that acts as a person would.
///
/// Records everything that a person would have seen, in order.
class HeadlessToolkit : public Toolkit {
 public:
  using Script = std::function<void(Form&)>;

  /// Queues a script for the next modal show. Scripts run in the order given. Without one, and when a script
  /// ends with the form still loaded, the form is closed by its frame.
  void scriptModal(Script script) { scripts_.push_back(std::move(script)); }
  /// Queues an answer for a message box; without one the first button is the answer.
  void answerMessage(MessageAnswer answer) { messageAnswers_.push_back(answer); }
  /// Queues a choice for a file dialog; without one the person cancels.
  void chooseFile(std::string path) { fileChoices_.push_back(std::move(path)); }
  void chooseFolder(FolderChoice choice) { folderChoices_.push_back(std::move(choice)); }
  /// Runs whenever the logic lets pending events run.
  void setPendingEvents(std::function<void()> events) { pendingEvents_ = std::move(events); }
  /// Called at each message box, before it is answered.
  void onMessage(std::function<void(const MessageBox&)> listener) { messageListener_ = std::move(listener); }

  [[nodiscard]] const std::vector<MessageBox>& messages() const { return messages_; }
  [[nodiscard]] const std::vector<FileDialog>& fileDialogs() const { return fileDialogs_; }
  /// Of saveFile; fileDialogs() are those of openFile.
  [[nodiscard]] const std::vector<FileDialog>& saveDialogs() const { return saveDialogs_; }
  [[nodiscard]] const std::vector<FolderDialog>& folderDialogs() const { return folderDialogs_; }
  /// Every pointer that was set, in order.
  [[nodiscard]] const std::vector<Pointer>& pointers() const { return pointers_; }
  /// Failures that reached the top-level handler.
  [[nodiscard]] const std::vector<std::string>& failures() const { return failures_; }
  [[nodiscard]] const std::string& clipboardText() const { return clipboardText_; }

  /// Adds a window of the host, with its place on the screen.
  WindowHandle addHostWindow(const std::string& title, const WindowRect& rect = {});
  /// Adds a window on top of a parent's other children. @returns its handle; 0 for an unknown parent.
  WindowHandle addChildWindow(WindowHandle parent, const std::string& title);
  /// Destroys a window with everything inside, as a host closing it would. A form that had its window there
  /// stays loaded and gets a new window when windowOf is called for it.
  void removeWindow(WindowHandle window);
  [[nodiscard]] WindowHandle parentOf(WindowHandle window) const;
  [[nodiscard]] bool isShown(WindowHandle window) const;
  [[nodiscard]] bool hasWindow(WindowHandle window) const { return windows_.contains(window); }

  [[nodiscard]] std::optional<std::string> openFile(const FileDialog& dialog) override;
  [[nodiscard]] std::optional<std::string> saveFile(const FileDialog& dialog) override;
  [[nodiscard]] std::optional<FolderChoice> browseForFolder(const FolderDialog& dialog) override;
  void setPointer(Pointer pointer) override;
  void letPendingEventsRun() override;
  void setClipboardText(const std::string& text) override { clipboardText_ = text; }
  void createView(Form& form) override;
  void destroyView(Form& form) override;
  void runModal(Form& form) override;
  [[nodiscard]] WindowHandle windowOf(const Form& form) override;
  [[nodiscard]] WindowHandle windowOf(const Control& control) override;
  [[nodiscard]] std::optional<WindowRect> windowRect(WindowHandle window) override;
  [[nodiscard]] std::int32_t styleOf(WindowHandle window) override;
  void setStyle(WindowHandle window, std::int32_t style) override;
  WindowHandle setParent(WindowHandle window, WindowHandle parent) override;
  void showWindow(WindowHandle window, std::int32_t mode) override;
  [[nodiscard]] std::vector<WindowHandle> childWindows(WindowHandle window) override;
  [[nodiscard]] std::string windowTitle(WindowHandle window, std::size_t limit) override;
  [[nodiscard]] bool isWindowEnabled(WindowHandle window) override;
  void enableWindow(WindowHandle window, bool enabled) override;
  [[nodiscard]] std::int32_t twipsPerPixelX() const override { return 15; }
  [[nodiscard]] std::int32_t twipsPerPixelY() const override { return 15; }
  void reportFailure(const std::string& description) override { failures_.push_back(description); }

 protected:
  MessageAnswer doShowMessage(const MessageBox& box) override;

 private:
  struct Window {
    WindowHandle parent = 0;
    std::string title;
    bool enabled = true;
    bool shown = false;
    bool appeared = false;  ///< the form has been told
    std::int32_t style = 0;
    WindowRect rect{};
    Form* form = nullptr;  ///< null when the window is not a form's
  };

  [[nodiscard]] WindowRect rectOf(const DesignGeometry& place) const;
  [[nodiscard]] WindowRect placeOf(const Window& window) const;
  [[nodiscard]] bool standsIn(WindowHandle window, WindowHandle container) const;
  WindowHandle addWindow(WindowHandle parent, const std::string& title);

  std::deque<Script> scripts_;
  std::deque<MessageAnswer> messageAnswers_;
  std::deque<std::string> fileChoices_;
  std::deque<FolderChoice> folderChoices_;
  std::function<void()> pendingEvents_;
  std::function<void(const MessageBox&)> messageListener_;
  std::vector<MessageBox> messages_;
  std::vector<FileDialog> fileDialogs_;
  std::vector<FileDialog> saveDialogs_;
  std::vector<FolderDialog> folderDialogs_;
  std::vector<Pointer> pointers_;
  std::vector<std::string> failures_;
  std::string clipboardText_;
  std::map<WindowHandle, Window> windows_;
  std::map<Form*, WindowHandle, std::less<>>
      formWindows_;  ///< of loaded forms; 0 when the window was destroyed
  std::map<const Control*, WindowHandle> controlWindows_;
  WindowHandle lastHandle_ = 0;
};

}  // namespace vlclientui::headless
#pragma GCC visibility pop
