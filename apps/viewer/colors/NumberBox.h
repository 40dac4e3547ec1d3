#pragma once

#include <QDoubleSpinBox>

namespace vlclientui::viewer {

/// A box for any number, shown with as many digits as it needs.
class NumberBox : public QDoubleSpinBox {
  Q_OBJECT

 public:
  explicit NumberBox(QWidget* parent = nullptr);

  [[nodiscard]] QString textFromValue(double value) const override;
  [[nodiscard]] QSize sizeHint() const override;
};

}  // namespace vlclientui::viewer
