#pragma once

#include <QScrollArea>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// Holds one widget and scrolls it where a screen leaves less height than the widget needs. It asks for the
/// size of the whole widget, and is content with a part of its height.
///
/// What gets the focus other than by the mouse is scrolled into view. The wheel changes no combo box that
/// lacks the focus: a person who scrolls meets them on the way.
class ScrollPlace : public QScrollArea {
 public:
  explicit ScrollPlace(QWidget* parent = nullptr);
  ScrollPlace(const ScrollPlace&) = delete;
  ScrollPlace& operator=(const ScrollPlace&) = delete;
  ~ScrollPlace() override;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  /// What the widget needs at the present width beyond the least height of this place, in pixels.
  [[nodiscard]] int missingHeight() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] int contentHeight() const;
  void leaveWheelToScrolling();
  void follow(QWidget* focused);
};

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
