#pragma once

#include <QLabel>
#include <QObject>
#include <QWidget>
#include <functional>
#include <string>

#include "engine/FormModel.h"

namespace vlclientui::widgets {

/// What a person does on a page; fields are named by their path. Called last in an event, since a call may
/// take the page away. Any of them may be empty.
struct PageListener {
  std::function<void(const std::string& path, const std::string& text)> edited;
  std::function<void(const std::string& path)> left;
  std::function<void(const std::string& path)> pressed;
  std::function<bool(const std::string& path)> help;
};

/// One field on a page: what shows its value and lets a person change it, with the complaint about it.
class FieldView : public QObject {
 public:
  explicit FieldView(const engine::FormField& field) : path_(field.path) {}

  [[nodiscard]] const std::string& path() const { return path_; }
  /// What stands in the page.
  [[nodiscard]] virtual QWidget* widget() const = 0;
  /// What takes the focus; it bears the field's name.
  [[nodiscard]] virtual QWidget* control() const = 0;
  /// Whether the label stands in the control rather than in front of it.
  [[nodiscard]] virtual bool labelsItself() const { return false; }
  /// Shows another state of the same field. Touches nothing that is shown already.
  virtual void update(const engine::FormField& field) = 0;
  /// Tells the listener nothing from now on.
  void retire() { retired_ = true; }

 protected:
  void tell(const std::function<void()>& news) const {
    if (!retired_ && !updating_) news();
  }
  /// Runs changes that are no person's.
  void quietly(const std::function<void()>& change);

 private:
  std::string path_;
  bool retired_ = false;
  bool updating_ = false;
};

/// The view for a field's kind; a read-only field is a text to be marked and copied. Belongs to the widget
/// given.
[[nodiscard]] FieldView* makeFieldView(const engine::FormField& field, const PageListener& listener,
                                       QWidget* parent);

/// A label with its key marked as the window system marks it.
[[nodiscard]] QString markedText(const std::string& text, std::optional<std::size_t> keyOffset);

}  // namespace vlclientui::widgets
