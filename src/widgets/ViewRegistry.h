#pragma once

#include <functional>
#include <map>
#include <string>

class QWidget;

namespace vlclientui::widgets {

/// Which layout belongs to a form or a hosted control. A layout is made by name: that of the form, or that
/// of the hosted control's class. Its widgets bear the names of the controls that they show.
class ViewRegistry {
 public:
  /// Fills an empty widget with the layout.
  using Builder = std::function<void(QWidget& root)>;

  /// The layouts of this library's own forms.
  [[nodiscard]] static ViewRegistry shipped();

  /// Replaces a builder of the same name.
  void add(const std::string& name, Builder builder);
  /// @throws RuntimeFailure when there is no layout of that name.
  void build(const std::string& name, QWidget& root) const;

 private:
  std::map<std::string, Builder> builders_;
};

}  // namespace vlclientui::widgets
