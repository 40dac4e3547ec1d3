#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "contracts/Event.h"

/// The form engine as this library needs it: two definitions and one data document become fields, lists and
/// trees in a window. Every call may throw RuntimeFailure.
#pragma GCC visibility push(default)
namespace vlclientui {

/// A window of the toolkit; 0 means none. 32 bits, since hosts pass it so.
using WindowHandle = std::int32_t;

/// What a Notify event tells. For a row, Value is the path of its parent ("/" at the root) and ItemName its
/// key and display text.
struct PlexaEvent {
  std::string EventName;     ///< "Click" or "DblClick" of a row, "Click" of a button, "Change" of a field
  std::string ControlName;   ///< name of the field or button, without "@"
  std::string Value;         ///< a field's new value, or the parent path of a row
  std::string ItemName;      ///< of a row
  std::int32_t KeyCode = 0;  ///< the key, 8 being Backspace
};

/// A sub-control of a shown page.
class PlexaControl {
 public:
  virtual ~PlexaControl() = default;
  /// How many allowed values the field has; 0 for a field that takes any text.
  [[nodiscard]] virtual std::int32_t ListCount() const = 0;
  /// @param index from 0. @throws RuntimeFailure when there is no such entry.
  [[nodiscard]] virtual std::string List(std::int32_t index) const = 0;
  /// What the field shows: of a choice the label, not the code.
  [[nodiscard]] virtual std::string Text() const = 0;
  /// Shows or hides the field.
  virtual void Visible(bool visible) = 0;
  /// Lets a person edit the field, or not. A read-only field stays read-only.
  virtual void Enabled(bool enabled) = 0;
};

/// One engine control, made anew for each showing. Holders set ParentWindow 0 before they release it.
class Plexa {
 public:
  virtual ~Plexa() = default;

  /// The window that holds the surface; 0 detaches it.
  virtual void ParentWindow(WindowHandle window) = 0;
  /// XPath root of the data, "//".
  virtual void DataRootPath(const std::string& path) = 0;
  /// Shows or hides the engine, before or after Show.
  virtual void Visible(bool visible) = 0;
  /// Title of a separate window.
  virtual void Caption(const std::string& caption) = 0;
  // Place in the parent window, pixels.
  /// Width of the surface in its parent, in pixels.
  virtual void Width(std::int32_t pixels) = 0;
  /// Height of the surface in its parent, in pixels.
  virtual void Height(std::int32_t pixels) = 0;
  /// Left edge in the parent, in pixels.
  virtual void Left(std::int32_t pixels) = 0;
  /// Upper edge in the parent, in pixels.
  virtual void Top(std::int32_t pixels) = 0;
  /// On a shown control this replaces the data.
  virtual void DataXml(const std::string& xml) = 0;
  /// The data as they were set, without edits.
  [[nodiscard]] virtual std::string DataXml() const = 0;
  /// The attribute definition, as text or as the path of a file.
  virtual void AttributeDefinition(const std::string& textOrPath) = 0;
  /// The text or path as it was set.
  [[nodiscard]] virtual std::string AttributeDefinition() const = 0;
  /// The form definition as text; empty shows all fields of the attribute definition.
  virtual void FormDefinition(const std::string& text) = 0;
  /// The text as it was set.
  [[nodiscard]] virtual std::string FormDefinition() const = 0;
  /// Of a page in a window of its own: false lets a person resize that window.
  virtual void ModalFrame(bool modalFrame) = 0;
  /// True for a page that stands in a window of somebody else; it then needs a parent.
  virtual void EmbeddedMode(bool embedded) = 0;
  /// The data document, edits included.
  [[nodiscard]] virtual std::string GetResultXml() = 0;
  /// Takes pending edits into the data.
  virtual bool Commit() = 0;
  /// Builds and displays. On a separate window it returns when that is closed.
  [[nodiscard]] virtual bool Show() = 0;
  /// The definition document that AttributeDefinition has set, as XML text.
  [[nodiscard]] virtual std::string GetTemplateXml() = 0;
  /// "readonly", "treeviewdisplay", "ShowVScrollBar", "List_Fields", "List_Values".
  virtual bool SetOption(const std::string& name, const std::string& value) = 0;
  /// @param name "@" and the field's name. Null when the definition lacks it.
  [[nodiscard]] virtual std::shared_ptr<PlexaControl> FindControl(const std::string& name) = 0;

  /// Raised with the control that raises it.
  Event<Plexa&, const PlexaEvent&> Notify;
};

/// Makes form engines; one per platform, used on the thread of that platform.
class PlexaFactory {
 public:
  virtual ~PlexaFactory() = default;
  /// A new engine without definitions and data; never null.
  [[nodiscard]] virtual std::shared_ptr<Plexa> createPlexa() = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
