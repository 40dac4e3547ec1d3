#pragma once

#include <QLabel>
#include <QObject>
#include <QWidget>
#include <functional>
#include <string>

#include "engine/FormModel.h"

namespace vlclientui::widgets {

/// What a person does on a page; fields are named by their path. Call these last in an event: they may
/// destroy the page. Any of them may be empty.
struct PageListener {
  std::function<void(const std::string& path, const std::string& text)> edited;
  std::function<void(const std::string& path)> left;
  std::function<void(const std::string& path)> pressed;
  std::function<bool(const std::string& path)> help;
};

/// One field on a page: shows its value and complaint, and lets a person change it.
class FieldView : public QObject {
 public:
  explicit FieldView(const engine::FormField& field) : path_(field.path) {}

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The widget to put into the page.
  [[nodiscard]] virtual QWidget* widget() const = 0;
  /// The widget that takes the focus; it has the field's name.
  [[nodiscard]] virtual QWidget* control() const = 0;
  /// Whether the widget shows the label itself, so that none goes in front of it.
  [[nodiscard]] virtual bool labelsItself() const { return false; }
  /// Shows another state of the same field. Leaves alone what is shown already.
  virtual void update(const engine::FormField& field) = 0;
  /// Stops all calls to the listener.
  void retire() { retired_ = true; }

 protected:
  void tell(const std::function<void()>& news) const {
    if (!retired_ && !updating_) news();
  }
  /// Runs changes that no person made.
  void quietly(const std::function<void()>& change);

 private:
  std::string path_;
  bool retired_ = false;
  bool updating_ = false;
};

/// The view for a field's kind; a read-only field becomes a text that can be marked and copied. The given
/// widget owns it.
[[nodiscard]] FieldView* makeFieldView(const engine::FormField& field, const PageListener& listener,
                                       QWidget* parent);

/// A label with its key marked as Qt marks it.
[[nodiscard]] QString markedText(const std::string& text, std::optional<std::size_t> keyOffset);

}  // namespace vlclientui::widgets
