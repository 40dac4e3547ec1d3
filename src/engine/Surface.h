#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "engine/FormModel.h"
#include "engine/ListModel.h"
#include "engine/TreeModel.h"

/// Where an engine shows itself. Window systems implement it.
namespace vlclientui::engine {

/// Window titles of surfaces inside a parent. Callers find an engine's list among a control's child windows
/// by a title that begins with "CHS".
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

/// What a person does on a surface. Row indexes count in the model last given to the surface; fields are
/// named by their path in it.
class SurfaceListener {
 public:
  virtual ~SurfaceListener() = default;
  /// One click, or the keyboard moved the selection to a row.
  virtual void rowClicked(std::size_t row) = 0;
  /// A double click, or Enter on the current row. A double click reports its first click as rowClicked.
  virtual void rowActivated(std::size_t row) = 0;
  /// Backspace while the list has the focus, even without rows.
  virtual void backspacePressed() = 0;

  /// A field's text changed: at each key in a typed field, at each choice in the others ("Yes" and "No" for a
  /// check box). The surface gets the page back with the new text.
  virtual void fieldEdited(const std::string& path, const std::string& text) = 0;
  /// A person is done with a typed field: the focus left it, or Enter was pressed in it.
  virtual void fieldLeft(const std::string& path) = 0;
  virtual void buttonPressed(const std::string& path) = 0;
  /// F1 on a page. @param path of the field with the focus; empty without one. @returns whether there is any
  /// help; if not, the key goes to the window around the page.
  virtual bool helpAsked(const std::string& path) = 0;
};

/// The view of one engine. It decides nothing and changes no model: a person's actions go to the listener,
/// what to show comes from the engine.
///
/// Implementers: everything runs on the user-interface thread. A listener call may give the surface a new
/// model, detach it, or destroy it: touch no member after the call, and let window objects outlive the event
/// that they are in. A listener call may throw RuntimeFailure; pass it to the toolkit's top-level handler,
/// never into the window system. No call of the engine may raise a listener call, not even selecting in a
/// fresh list. The destructor detaches.
class Surface {
 public:
  Surface() = default;
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  virtual ~Surface() = default;

  /// Puts the surface into a window as its child window with that title, out of its former one if need be.
  /// @throws RuntimeFailure for an unknown window.
  virtual void attach(WindowHandle parent, const std::string& title) = 0;
  /// Takes the surface out of its window, even one that is destroyed already. Does nothing without a window.
  virtual void detach() = 0;
  virtual void setGeometry(const PixelRectangle& place) = 0;
  virtual void setVisible(bool visible) = 0;
  /// Whether a page taller than its place gets a vertical scroll bar. Lists get one whenever they need it.
  virtual void setPageScrollBar(bool shown) = 0;

  /// Replaces what is shown by a list: columns in the proportions of their widths, rows with icons, no row
  /// selected, scrolled to the top. The model is immutable and may be kept; it can have 100,000 rows.
  virtual void showList(std::shared_ptr<const ListModel> list) = 0;
  /// New rows, or new columns, for the shown list. The columns keep the widths that a person gave them
  /// while their names stay the same. No row is selected afterwards; the focus stays.
  virtual void updateList(std::shared_ptr<const ListModel> list) = 0;

  /// Replaces what is shown by a page.
  virtual void showForm(std::shared_ptr<const FormModel> form) = 0;
  /// The same page with other values, complaints, visibility or layout. Leave a field alone that holds its
  /// value already, with its cursor and undo history; white space at the ends of a typed text makes no
  /// difference.
  virtual void updateForm(std::shared_ptr<const FormModel> form) = 0;

  /// Replaces what is shown by a tree of a document, its first node open. Ask for nodes when they become
  /// visible; there can be 100,000. The tree scrolls when it needs to.
  virtual void showTree(std::shared_ptr<TreeModel> tree) = 0;

  /// Shows a page in a window of its own until that is closed. The surface need not be attached; updateForm
  /// reaches this window too. May run pending events, which must not destroy the surface.
  virtual void runWindow(const std::string& caption, WindowFrame frame,
                         std::shared_ptr<const FormModel> form) = 0;
};

class SurfaceFactory {
 public:
  virtual ~SurfaceFactory() = default;
  /// @param listener expires with its engine. Lock it before each call and hold the lock for the length of
  /// the call.
  [[nodiscard]] virtual std::unique_ptr<Surface> createSurface(std::weak_ptr<SurfaceListener> listener) = 0;
};

}  // namespace vlclientui::engine
