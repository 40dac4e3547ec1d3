#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Plexa.h"

#pragma GCC visibility push(default)
namespace vlclientui {

class Form;
class Control;

/// The picture in a message box, in the numbers of the window system.
enum class MessageIcon : std::int32_t {
  None = 0,          ///< no picture
  Critical = 16,     ///< something failed
  Question = 32,     ///< something is asked
  Exclamation = 48,  ///< something is wrong, or soon will be
  Information = 64   ///< something is told
};
/// The buttons of a message box, in the numbers of the window system.
enum class MessageButtons : std::int32_t {
  Ok = 0,           ///< OK alone
  OkCancel = 1,     ///< OK and Cancel
  YesNoCancel = 3,  ///< Yes, No and Cancel
  YesNo = 4         ///< Yes and No
};
/// The button that a person pressed, in the numbers of the window system.
enum class MessageAnswer : std::int32_t {
  Ok = 1,      ///< OK
  Cancel = 2,  ///< Cancel, or the box was closed
  Yes = 6,     ///< Yes
  No = 7       ///< No
};

/// As a button bears it.
[[nodiscard]] const char* wordOf(MessageAnswer answer);

/// A message with its buttons, to be shown over the active window.
struct MessageBox {
  /// For a person; may have several lines.
  std::string text;
  std::string title;  ///< empty for the program's own name
  /// The picture beside the text.
  MessageIcon icon = MessageIcon::None;
  /// Which of them a person can press.
  MessageButtons buttons = MessageButtons::Ok;

  /// Whether both would look alike.
  bool operator==(const MessageBox&) const = default;
};

/// Asks a person for a file to open or to save.
struct FileDialog {
  std::string fileName;  ///< proposed name, may be empty
  std::string filter;    ///< "Label|*.ext|Label|*.ext"
  std::string title;     ///< empty for the toolkit's own
  /// The folder in which the dialog opens. Empty or missing: the toolkit chooses.
  std::string startFolder{};
  /// Whether saveFile asks before it returns the name of an existing file.
  bool asksBeforeOverwriting = false;

  /// Whether both would look alike.
  bool operator==(const FileDialog&) const = default;
};

/// Asks a person for a folder or for a computer of the network.
struct FolderDialog {
  std::int32_t rootFolderId = 0;  ///< shell folder the browser starts from; 18 is the network
  /// The window that the dialog stands over; 0 for none.
  WindowHandle owner = 0;
  /// The sentence above the folders.
  std::string title;
  /// Bits for the folder browser of a system that has one; the ready-made toolkits look at none.
  std::int32_t flags = 0;

  /// Whether both would look alike.
  bool operator==(const FolderDialog&) const = default;
};

/// What a person chose in a FolderDialog.
struct FolderChoice {
  std::optional<std::string>
      path;  ///< may hold characters behind a NUL; nothing for a choice that is not a folder
  /// The name that the dialog showed for the choice.
  std::string displayName;
};

/// A window's place on the screen, pixels; right and bottom lie just outside.
struct WindowRect {
  /// First column.
  std::int32_t left = 0;
  /// First row.
  std::int32_t top = 0;
  /// The column behind the last one.
  std::int32_t right = 0;
  /// The row below the last one.
  std::int32_t bottom = 0;

  /// Columns, in pixels.
  [[nodiscard]] std::int32_t width() const { return right - left; }
  /// Rows, in pixels.
  [[nodiscard]] std::int32_t height() const { return bottom - top; }
  /// Whether both are the same place.
  bool operator==(const WindowRect&) const = default;
};

/// Bits of a window's style.
namespace windowStyle {
/// WS_CHILD: the window lies inside another one.
inline constexpr std::int32_t child = 0x40000000;
}  // namespace windowStyle

/// Mode of showWindow: show the window at its present place and size.
inline constexpr std::int32_t showModeShow = 5;

/// Mouse pointers, in the numbers of the window system. Set, never stacked.
enum class Pointer : std::int32_t {
  Default = 0,    ///< as each place has it
  Arrow = 1,      ///< an arrow
  Hourglass = 11  ///< wait
};

/// Everything between the logic and a person: windows, boxes, pointer, clipboard. One per host thread. Paths
/// in and out have drives and backslashes. No exception of a handler may unwind through the window system.
class Toolkit {
 public:
  Toolkit() = default;
  Toolkit(const Toolkit&) = delete;
  Toolkit& operator=(const Toolkit&) = delete;
  virtual ~Toolkit() = default;

  /// Shows a message and waits for the answer. Raises no focus events of controls.
  MessageAnswer showMessage(const MessageBox& box);
  /// How many messages were shown so far.
  [[nodiscard]] std::size_t messageCount() const { return messageCount_; }

  /// Nothing when the person cancels.
  [[nodiscard]] virtual std::optional<std::string> openFile(const FileDialog& dialog) = 0;
  /// The same for a file to be written. Neither adds an extension: the caller does.
  [[nodiscard]] virtual std::optional<std::string> saveFile(const FileDialog& dialog) = 0;
  /// Nothing when the person cancels.
  [[nodiscard]] virtual std::optional<FolderChoice> browseForFolder(const FolderDialog& dialog) = 0;

  /// Sets the mouse pointer over all windows of the program until the next call.
  virtual void setPointer(Pointer pointer) = 0;
  /// Paints and takes what has come in so far, then returns: handlers run inside the call.
  virtual void letPendingEventsRun() = 0;
  /// Replaces what the clipboard holds. @param text UTF-8.
  virtual void setClipboardText(const std::string& text) = 0;

  /// Makes the window of a form that is being loaded, hidden, bound to its controls.
  virtual void createView(Form& form) = 0;
  /// Drops the window of a form that is being unloaded; a modal show of it returns.
  virtual void destroyView(Form& form) = 0;
  /// Shows the form's window, calls windowAppeared, and returns when the form has been unloaded.
  virtual void runModal(Form& form) = 0;

  /// The window of a loaded form; 0 when it is not loaded. When a host destroyed the window around it, the
  /// form gets a new, hidden one over the same controls; the windows inside it likewise.
  [[nodiscard]] virtual WindowHandle windowOf(const Form& form) = 0;
  /// The window of a hosted control or a frame on a loaded form; otherwise 0.
  [[nodiscard]] virtual WindowHandle windowOf(const Control& control) = 0;
  /// GetWindowRect. Nothing for an unknown handle.
  [[nodiscard]] virtual std::optional<WindowRect> windowRect(WindowHandle window) = 0;
  /// GetWindowLongA with index -16; 0 for an unknown handle.
  [[nodiscard]] virtual std::int32_t styleOf(WindowHandle window) = 0;
  /// SetWindowLongA with index -16. An unknown handle is ignored.
  virtual void setStyle(WindowHandle window, std::int32_t style) = 0;
  /// SetParent. Hides the window until it is shown again, and tells the form nothing, even when its window
  /// had the focus. @param window that moves. @param parent 0 for the desktop. @returns the old parent, 0 for
  /// the desktop. Refused, with 0 for an unknown window, when either handle is unknown or the parent lies
  /// inside the window.
  virtual WindowHandle setParent(WindowHandle window, WindowHandle parent) = 0;
  /// ShowWindow. The first show since its load tells the form that its window has appeared. Inside a window
  /// of the host it takes no focus.
  virtual void showWindow(WindowHandle window, std::int32_t mode) = 0;
  /// GetWindow: the direct child windows, topmost first.
  [[nodiscard]] virtual std::vector<WindowHandle> childWindows(WindowHandle window) = 0;
  /// GetWindowTextA; empty for an unknown handle. @param window whose title is read. @param limit characters
  /// at most.
  [[nodiscard]] virtual std::string windowTitle(WindowHandle window, std::size_t limit) = 0;
  /// Whether the window takes input; false for an unknown handle.
  [[nodiscard]] virtual bool isWindowEnabled(WindowHandle window) = 0;
  /// Lets the window take input, or not. An unknown handle is ignored.
  virtual void enableWindow(WindowHandle window, bool enabled) = 0;

  /// Twips (1/1440 inch) of one pixel across; 15 in the ready-made toolkits.
  [[nodiscard]] virtual std::int32_t twipsPerPixelX() const = 0;
  /// The same down.
  [[nodiscard]] virtual std::int32_t twipsPerPixelY() const = 0;

  /// The top-level handler: a failure that no handler caught. The program lives on.
  virtual void reportFailure(const std::string& description) = 0;

 protected:
  /// Shows the box and waits. showMessage calls it, unless another acts in a person's place.
  virtual MessageAnswer doShowMessage(const MessageBox& box) = 0;

 private:
  std::size_t messageCount_ = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
