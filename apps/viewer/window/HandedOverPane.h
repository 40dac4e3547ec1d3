#pragma once

#include <QWidget>

class QAction;
class QPlainTextEdit;

namespace vlclientui::viewer {

/// The document that the add-service window handed over, for those who write a host themselves. Hidden at
/// first.
class HandedOverPane : public QWidget {
  Q_OBJECT

 public:
  explicit HandedOverPane(QWidget* parent = nullptr);

  void showDocument(const QString& text);
  /// Shows and hides it.
  [[nodiscard]] QAction& toggle() const { return *toggle_; }

 private:
  QPlainTextEdit* document_;
  QAction* toggle_;
};

}  // namespace vlclientui::viewer
