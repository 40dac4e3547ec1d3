#include "widgets/ReadableColors.h"

#include <QEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace vlclientui::widgets {

namespace {

constexpr int steps = 20;

double linear(double share) {
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& from, const QColor& to, double share) {
  using Part = decltype(from.redF());
  const auto between = [share](Part one, Part other) {
    return static_cast<Part>(one + (other - one) * share);
  };
  return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                          between(from.blueF(), to.blueF()));
}

/// The first color on the way from one to another that can be read; the other one where none can.
QColor firstReadable(const QColor& from, const QColor& to, const QColor& background) {
  for (int step = 0; step < steps; ++step) {
    const QColor color = mixed(from, to, static_cast<double>(step) / steps);
    if (contrastOf(color, background) >= leastContrast) return color;
  }
  return to;
}

class PaletteFollower : public QObject {
 public:
  PaletteFollower(QWidget& widget, std::function<void(QPalette&)> choose)
      : QObject(&widget), widget_(widget), choose_(std::move(choose)) {
    widget.installEventFilter(this);
  }

  void follow() {
    QPalette palette = widget_.palette();
    choose_(palette);
    if (palette != widget_.palette()) widget_.setPalette(palette);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &widget_ && event->type() == QEvent::PaletteChange) follow();
    return QObject::eventFilter(watched, event);
  }

 private:
  QWidget& widget_;
  std::function<void(QPalette&)> choose_;
};

}  // namespace

double contrastOf(const QColor& one, const QColor& other) {
  const double first = luminance(one);
  const double second = luminance(other);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor complaintColor(const QColor& background) {
  const QColor dark(0xb0, 0x1e, 0x1e);
  const QColor light(0xff, 0x8a, 0x80);
  // The end of the way that stands out more decides: on a middle gray only one of them can be read.
  const bool takesDark = contrastOf(Qt::black, background) > contrastOf(Qt::white, background);
  return takesDark ? firstReadable(dark, Qt::black, background) : firstReadable(light, Qt::white, background);
}

QColor faintColor(const QPalette& palette, QPalette::ColorRole background) {
  const QColor behind = palette.color(background);
  const QColor full = palette.color(QPalette::Text);
  return firstReadable(mixed(full, behind, 0.5), full, behind);
}

QColor faintRowColor(const QPalette& palette) {
  const QColor text = palette.color(QPalette::Text);
  const bool alternateIsNearer = contrastOf(text, palette.color(QPalette::AlternateBase)) <
                                 contrastOf(text, palette.color(QPalette::Base));
  return faintColor(palette, alternateIsNearer ? QPalette::AlternateBase : QPalette::Base);
}

void colorBy(QWidget& widget, std::function<void(QPalette&)> choose) {
  (new PaletteFollower(widget, std::move(choose)))->follow();
}

void colorAsComplaint(QWidget& label) {
  colorBy(label, [](QPalette& palette) {
    palette.setColor(QPalette::WindowText, complaintColor(palette.color(QPalette::Window)));
  });
}

void colorFaintly(QWidget& label) {
  colorBy(label, [](QPalette& palette) {
    palette.setColor(QPalette::WindowText, faintColor(palette, QPalette::Window));
  });
}

}  // namespace vlclientui::widgets
