#pragma once

#include <QLabel>

namespace vlclientui::widgets {

/// The text of a value to be read, selected and copied. Wraps also where the text itself has no place for
/// that, such as in a path or in a definition of a coordinate system, so that no value asks for a page wider
/// than the window; what is copied is the text as it was given.
class ValueLabel : public QLabel {
 public:
  explicit ValueLabel(QWidget* parent = nullptr);

  /// Plain text.
  void setValue(const QString& value);
  [[nodiscard]] QString value() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void copySelection(int clipboardMode) const;
};

/// The text with chances to break a line in each run of more than 16 signs without white space: behind signs
/// such as "/" and "_", and behind every sign of what is still too long then. The chances have no width.
[[nodiscard]] QString withLineBreakChances(const QString& text);

}  // namespace vlclientui::widgets
