#pragma once

#include <QLabel>

namespace vlclientui::widgets {

/// A value's text, to read, select and copy. Wraps even where the text itself has no place for a break, such
/// as in a path or the definition of a coordinate system, so that no value makes a page wider than the
/// window. Copies the text as it was given.
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

/// The text with break opportunities of no width in each run of more than 16 characters without white space:
/// after characters such as "/" and "_", and after every character of what is still too long then.
[[nodiscard]] QString withLineBreakChances(const QString& text);

}  // namespace vlclientui::widgets
