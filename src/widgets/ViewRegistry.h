#pragma once

#include <functional>
#include <map>
#include <string>

class QWidget;

namespace vlclientui::widgets {

/// Finds the layout of a form or a hosted control, by the form's name or the class of the hosted control. The
/// widgets of a layout have the names of the controls that they show.
class ViewRegistry {
 public:
  /// Fills an empty widget with the layout.
  using Builder = std::function<void(QWidget& root)>;

  /// The layouts of this library's own forms.
  [[nodiscard]] static ViewRegistry shipped();

  /// Replaces a builder of that name, if there is one.
  void add(const std::string& name, Builder builder);
  /// @throws RuntimeFailure for an unknown layout.
  void build(const std::string& name, QWidget& root) const;

 private:
  std::map<std::string, Builder> builders_;
};

}  // namespace vlclientui::widgets
