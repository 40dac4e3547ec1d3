#pragma once

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "frame/ThreadState.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"
#include "viewer/map/MapView.h"
#include "viewer/tour/Person.h"
#include "viewer/tour/StepRunner.h"
#include "viewer/window/ViewerWindow.h"

namespace vlclientui::test {

/// The viewer's window on the samples, in a home of its own.
class ViewerFixture : public testing::Test {
 protected:
  ViewerFixture() {
    host::HostOptions options;
    options.home = sourceFolder();
    options.catalogue = samplesFolder();
    options.locale = "C";
    host_ = host::composeDesktopPlatform(options);
    setPlatform(host_.platform);
    window_ = std::make_unique<viewer::ViewerWindow>(host_, home_.path());
    window_->show();
    window_->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(window_.get()));
  }
  ~ViewerFixture() override {
    window_.reset();
    setPlatform(nullptr);
  }

  void pick(const std::string& reference) {
    window_->takeSelectedServices("<SelectedImageServices><Name>" + reference +
                                  "</Name></SelectedImageServices>");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  }
  void pickSample(const std::string& name) { pick("ImageService://127.0.0.1/" + name); }

  [[nodiscard]] QAction& action(const char* name) const {
    return *window_->findChild<QAction*>(QLatin1String(name));
  }
  [[nodiscard]] viewer::MapView& map() const { return *window_->findChild<viewer::MapView*>(); }

  [[nodiscard]] static QWidget& window(const QString& title) {
    QWidget* found = viewer::person::modalWindow(title);
    if (found == nullptr) throw viewer::person::Astray("there is no window " + title.toStdString());
    return *found;
  }
  [[nodiscard]] static QWidget& exportWindow() { return window("Export Image Properties"); }
  [[nodiscard]] static QLineEdit& box(const char* name) {
    return viewer::person::find<QLineEdit>(exportWindow(), name);
  }
  static void fill(const char* name, const std::string& text) {
    viewer::person::typeInto(box(name), QString::fromStdString(text));
    viewer::person::press(exportWindow(), Qt::Key_Tab);
  }
  static void click(QWidget& window, const char* button) {
    viewer::person::click(viewer::person::find<QPushButton>(window, button));
  }

  /// Opens the export window; what follows it are steps of `steps_`.
  void openExport() {
    steps_.act("export", [this] { window_->exportPickedService(); });
    steps_.see("the export window",
               [] { return exportWindow().isActiveWindow() && box("uiTxtCols").isVisible(); });
  }
  void act(std::function<void()> action) { steps_.act("act", std::move(action)); }
  void see(const QString& what, std::function<bool()> condition) { steps_.see(what, std::move(condition)); }
  void seeMessage(const QString& title, const QString& part) {
    see("message " + part, [=] { return dynamic_cast<QMessageBox&>(window(title)).text().contains(part); });
    act([title] { viewer::person::press(window(title), Qt::Key_Return); });
  }
  [[nodiscard]] static QWidget& modalWindow() {
    QWidget* const found = QApplication::activeModalWidget();
    if (found == nullptr) throw viewer::person::Astray("there is no window");
    return *found;
  }
  /// Of the window in front. @throws Astray while they are being read.
  [[nodiscard]] static QAbstractItemView& listedServices() {
    const QCursor* const pointer = QGuiApplication::overrideCursor();
    if (pointer != nullptr && pointer->shape() == Qt::WaitCursor)
      throw viewer::person::Astray("the services are being read");
    return viewer::person::find<QAbstractItemView>(modalWindow(), "");
  }
  void seeNoWindow() {
    see("no other window", [] { return QApplication::activeModalWidget() == nullptr; });
  }
  /// As a window manager does when a popup or a message has gone.
  void seeExportWindowInFront() {
    see("the export window in front", [] {
      exportWindow().activateWindow();
      return exportWindow().isActiveWindow();
    });
  }
  void run() { ASSERT_EQ(steps_.run(), 0); }

  /// In the folder that VLCLIENTUI_PICTURES names, where somebody wants to look at them.
  static void keepPicture(QWidget& widget, const QString& name) {
    const QString folder = qEnvironmentVariable("VLCLIENTUI_PICTURES");
    if (!folder.isEmpty()) widget.grab().save(folder + "/" + name + ".png");
  }

  [[nodiscard]] std::filesystem::path file(const std::string& name) const { return home_.path() / name; }

  TemporaryFolder home_;
  EnvironmentKeeper homeVariable_{"HOME", home_.path().string()};
  EnvironmentKeeper dataVariable_{"XDG_DATA_HOME", std::nullopt};
  EnvironmentKeeper configVariable_{"XDG_CONFIG_HOME", std::nullopt};
  host::ComposedHost host_;
  std::unique_ptr<viewer::ViewerWindow> window_;
  viewer::StepRunner steps_;
};

}  // namespace vlclientui::test
