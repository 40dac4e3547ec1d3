#include "viewer/colors/NumberBox.h"

namespace vlclientui::viewer {

NumberBox::NumberBox(QWidget* parent) : QDoubleSpinBox(parent) {
  constexpr double most = 1e12;
  setRange(-most, most);
  setDecimals(9);
  setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
  setKeyboardTracking(false);
  setAlignment(Qt::AlignRight);
}

QString NumberBox::textFromValue(double value) const {
  QString text = locale().toString(value, 'g', 10);
  text.remove(locale().groupSeparator());
  return text;
}

// The widest number that is possible would make the box wider than any that there is.
QSize NumberBox::sizeHint() const {
  return {fontMetrics().horizontalAdvance("-000000.0000") + 40, QDoubleSpinBox::sizeHint().height()};
}

}  // namespace vlclientui::viewer
