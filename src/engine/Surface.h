#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "engine/FormModel.h"
#include "engine/ListModel.h"

/// Where an engine shows itself, as a window system supplies it.
namespace vlclientui::engine {

/// Titles of the windows that surfaces put into a parent. Callers find an engine's list among the child
/// windows of a control by a title that begins with "CHS".
inline constexpr const char* listWindowTitle = "CHSList";
inline constexpr const char* pageWindowTitle = "Page";

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

/// What a person does on a surface. Indexes count the rows of the model last given to the surface.
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
  /// The same fields with other values, or shown, hidden, enabled, disabled.
  virtual void updateForm(std::shared_ptr<const FormModel> form) = 0;

  /// Shows a page in a window of its own and returns when that is closed. The surface itself need not be
  /// attached. May run pending events, in which the surface must not be destroyed.
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
