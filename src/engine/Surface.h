#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "engine/FormModel.h"
#include "engine/ListModel.h"
#include "engine/TreeModel.h"

/// Where an engine shows itself, as a window system supplies it.
namespace vlclientui::engine {

/// Titles of the windows that surfaces put into a parent. Callers find an engine's list among the child
/// windows of a control by a title that begins with "CHS".
inline constexpr const char* listWindowTitle = "CHSList";
inline constexpr const char* pageWindowTitle = "Page";
inline constexpr const char* treeWindowTitle = "Tree";

/// A place in the parent window, pixels.
struct PixelRectangle {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  bool operator==(const PixelRectangle&) const = default;
};

/// The frame of a separate window: a fixed dialog frame, or one that can be resized.
enum class WindowFrame : std::uint8_t { Resizable, Modal };

/// What a person does on a surface. Indexes count the rows of the model last given to the surface; fields
/// are named by their path in it.
class SurfaceListener {
 public:
  virtual ~SurfaceListener() = default;
  /// One click, or the selection moved onto a row by keyboard.
  virtual void rowClicked(std::size_t row) = 0;
  /// A double click, or Enter on the current row. The first click of a double click is a rowClicked of
  /// its own.
  virtual void rowActivated(std::size_t row) = 0;
  /// Backspace while the list has the focus, also in a list without rows.
  virtual void backspacePressed() = 0;

  /// Another text stands in a field: at each key in a typed one, at each choice in the others ("Yes" and
  /// "No" in a check box). The surface gets the page back with the text in it.
  virtual void fieldEdited(const std::string& path, const std::string& text) = 0;
  /// A person is done with a typed field: the focus left it, or Enter was pressed in it.
  virtual void fieldLeft(const std::string& path) = 0;
  virtual void buttonPressed(const std::string& path) = 0;
  /// F1 on a page. @param path of the field with the focus; empty when none has it. @returns whether there
  /// is any help; otherwise the key is for whoever stands around the page.
  virtual bool helpAsked(const std::string& path) = 0;
};

/// The view of one engine. It holds no rules and changes no model; what a person does goes to the
/// listener, what shall be seen comes from the engine.
///
/// Implementers: everything runs on the thread of the user interface. A listener call may give the
/// surface a new model, detach it, or destroy it: touch no member behind the call, and let window objects
/// outlive the event that they are in. A listener call may throw RuntimeFailure; let it reach the
/// toolkit's top-level handler, never the window system. No call of the engine raises a listener call,
/// setting the selection of a fresh list included. The destructor detaches.
class Surface {
 public:
  Surface() = default;
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  virtual ~Surface() = default;

  /// Puts the surface into a window as its child window, with that title. A surface that stands elsewhere
  /// moves. @throws RuntimeFailure when there is no such window.
  virtual void attach(WindowHandle parent, const std::string& title) = 0;
  /// Takes the surface out of its window, also after that window is gone. Harmless when it is in none.
  virtual void detach() = 0;
  virtual void setGeometry(const PixelRectangle& place) = 0;
  virtual void setVisible(bool visible) = 0;
  /// Whether a page higher than its place has a vertical scroll bar. Lists have one whenever they need it.
  virtual void setPageScrollBar(bool shown) = 0;

  /// Shows a list in place of whatever was shown: columns in the proportions of their widths, rows with
  /// icons, no row selected, scrolled to the top. The model is immutable and may be kept; it can have
  /// 100,000 rows.
  virtual void showList(std::shared_ptr<const ListModel> list) = 0;
  /// New rows, or new columns, for the shown list. The columns keep the widths that a person gave them
  /// while their names stay the same. No row is selected afterwards; the focus stays.
  virtual void updateList(std::shared_ptr<const ListModel> list) = 0;

  /// Shows a page in place of whatever was shown.
  virtual void showForm(std::shared_ptr<const FormModel> form) = 0;
  /// The page with other values or complaints, with fields shown, hidden, enabled, disabled, or laid out
  /// anew. A field that holds its value already is left alone, with its cursor and what can be undone in
  /// it; white space at the ends of a typed text does not count.
  virtual void updateForm(std::shared_ptr<const FormModel> form) = 0;

  /// Shows a document as a tree in place of whatever was shown, its first node open. Nodes are asked for
  /// when they are to be seen; there can be 100,000. The tree scrolls whenever it needs to.
  virtual void showTree(std::shared_ptr<TreeModel> tree) = 0;

  /// Shows a page in a window of its own and returns when that is closed. The surface itself need not be
  /// attached; updateForm reaches the window meanwhile. May run pending events, in which the surface must not
  /// be destroyed.
  virtual void runWindow(const std::string& caption, WindowFrame frame,
                         std::shared_ptr<const FormModel> form) = 0;
};

class SurfaceFactory {
 public:
  virtual ~SurfaceFactory() = default;
  /// @param listener gone when its engine is; a surface calls it only while it can lock it, and holds
  /// that lock for the length of the call.
  [[nodiscard]] virtual std::unique_ptr<Surface> createSurface(std::weak_ptr<SurfaceListener> listener) = 0;
};

}  // namespace vlclientui::engine
