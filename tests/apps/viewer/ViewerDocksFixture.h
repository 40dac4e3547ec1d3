#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QDockWidget>
#include <string>

#include "apps/viewer/ViewerFixture.h"
#include "host/ServiceView.h"

namespace vlclientui::test {

inline constexpr const char* overlaps = "Imagery/Overlap_Study";
inline const QColor red(196, 60, 52);
inline const QColor green(70, 150, 74);
inline const QColor blue(58, 96, 186);
// Where all three sheets lie over each other.
inline constexpr host::GeographicPoint middlePlace{0.5, 0.5};

/// A person at the docks of the viewer, who picks the sample of three plain colors: it shows which source
/// lies on top.
class ViewerDocksFixture : public ViewerFixture {
 protected:
  ViewerDocksFixture() { window_->resize(1400, 900); }

  void pickOverlaps() {
    pickSample(overlaps);
    seeDrawn();
    window_->zoomToService();
    seeDrawn();
  }
  void seeDrawn() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->isDrawing(); }, 30'000));
    QCoreApplication::processEvents();
  }
  [[nodiscard]] QDockWidget& dock(const char* name) const {
    return *window_->findChild<QDockWidget*>(QLatin1String(name));
  }
  void open(const char* name) {
    dock(name).toggleViewAction()->trigger();
    QCoreApplication::processEvents();
  }
  /// Of the image, as the map got it: shares of its size.
  [[nodiscard]] QColor imageColor(double across = middlePlace.x, double down = middlePlace.y) const {
    const viewer::ShownImage& image = map().image();
    if (!image.isShown) return {};
    const QPointF upper = map().toPixel(image.corners[0].x, image.corners[0].y);
    const QPointF lower = map().toPixel(image.corners[2].x, image.corners[2].y);
    const QPointF at(upper.x() + (lower.x() - upper.x()) * across,
                     upper.y() + (lower.y() - upper.y()) * down);
    return map().picture(image.reference).pixelColor((at * map().devicePixelRatioF()).toPoint());
  }
  /// Of the map on the screen, a little aside the viewpoint's mark.
  [[nodiscard]] QColor screenColor() const {
    const auto& corners = map().image().corners;
    const auto upper = map().toPixel(corners[0].x, corners[0].y);
    const auto lower = map().toPixel(corners[2].x, corners[2].y);
    const QPointF middle =
        upper + QPointF((lower.x() - upper.x()) * middlePlace.x, (lower.y() - upper.y()) * middlePlace.y);
    return map().grab().toImage().pixelColor((middle + QPointF(18, 20)).toPoint());
  }
  [[nodiscard]] std::string servicePropertiesAt(const std::string& element) const {
    const auto document = host_.platform->xml->createDocument();
    EXPECT_TRUE(document->loadXml(serviceProperties()));
    const auto node = document->selectSingleNode("//Vorlane/ImageServiceProperties/" + element);
    return node ? node->text() : "(missing)";
  }
  [[nodiscard]] std::string serviceProperties() const {
    return window_->pickedService()->ServiceProperties();
  }
  void chooseMethod(const QString& method) {
    window_->activateWindow();
    viewer::person::choose(viewer::person::find<QComboBox>(dock("PropertiesDock"), "MosaicMethod"), method);
    window_->activateWindow();
  }
  void apply(const char* name) {
    click(dock(name), "ApplyProperties");
    seeDrawn();
  }
  void openPropertiesWindow() {
    act([this] { action("ServiceProperties").trigger(); });
    see("the window",
        [] { return viewer::person::find<QComboBox>(modalWindow(), "MosaicMethod").isVisible(); });
    seePropertiesWindowInFront();
  }
  /// As a window manager does when a popup has gone.
  void seePropertiesWindowInFront() {
    see("the window in front", [] {
      modalWindow().activateWindow();
      return modalWindow().isActiveWindow();
    });
  }
  static void clickMove(QDockWidget& dock, const char* name) {
    viewer::person::click(viewer::person::find<QAbstractButton>(dock, name));
  }
};

}  // namespace vlclientui::test
