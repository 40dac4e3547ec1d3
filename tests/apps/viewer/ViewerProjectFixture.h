#pragma once

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QStatusBar>
#include <memory>
#include <string>
#include <vector>

#include "apps/viewer/ViewerDocksFixture.h"
#include "viewer/list/ServiceList.h"

namespace vlclientui::test {

/// A person with projects, and windows that start again.
class ViewerProjectFixture : public ViewerDocksFixture {
 protected:
  static constexpr const char* lockedToRed =
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"
      "</ImageServiceProperties></Vorlane>";

  [[nodiscard]] viewer::ServiceList& list() const {
    return viewer::person::find<viewer::ServiceList>(*window_, "ServiceList");
  }
  [[nodiscard]] const std::vector<viewer::ServiceListModel::Row>& rows() const {
    return window_->services().rows();
  }
  [[nodiscard]] QString told() const { return window_->statusBar()->currentMessage(); }
  void seeRead() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
    seeDrawn();
  }
  void makeWindow() {
    window_ = std::make_unique<viewer::ViewerWindow>(host_, home_.path());
    window_->resize(1400, 900);
  }
  void showWindow() {
    window_->show();
    window_->activateWindow();
    seeRead();
  }
  void answerUnsaved(QMessageBox::StandardButton answer) {
    see("the question about changes", [] { return window("Unsaved changes").isVisible(); });
    act([answer] {
      auto& question = dynamic_cast<QMessageBox&>(window("Unsaved changes"));
      keepPicture(question, "unsaved-question");
      viewer::person::click(*question.button(answer));
    });
  }
  /// A window of the same home, as at the next start.
  void startAgain() {
    makeWindow();
    window_->keepSession();
    showWindow();
  }
  void makeMap() {
    pickSample("World/EGM96_Geoid");
    pickOverlaps();
    window_->drawWith(lockedToRed);
    seeDrawn();
    action("Opacity50").trigger();
    list().setCurrentIndex(list().model()->index(1, 0));
    action("ToggleVisible").trigger();
    list().setCurrentIndex(list().model()->index(0, 0));
    seeDrawn();
  }
  void expectMap() {
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[0].reference, QString("ImageService://127.0.0.1/") + overlaps);
    EXPECT_EQ(rows()[0].shown.opacity, 0.5);
    EXPECT_FALSE(rows()[1].shown.isVisible);
    EXPECT_EQ(list().currentIndex().row(), 0);
    EXPECT_EQ(servicePropertiesAt("LockImageID"), "1");
    EXPECT_EQ(imageColor(), red);
    const auto view = map().view();
    EXPECT_TRUE(view.xMin > 7 && view.xMax < 10) << view.xMin << " " << view.xMax;
  }
  void saveAs(const std::string& name) {
    viewer::StepRunner steps;
    steps.act("save", [this] { action("SaveProjectAs").trigger(); });
    steps.see("the question for a file", [] { return window("Save the project").isVisible(); });
    steps.act("answer", [&] {
      QWidget& dialog = window("Save the project");
      viewer::person::typeInto(viewer::person::find<QLineEdit>(dialog, "fileNameEdit"),
                               QString::fromStdString(file(name).string()));
      viewer::person::press(dialog, Qt::Key_Return);
    });
    steps.see("that it is saved", [] { return QApplication::activeModalWidget() == nullptr; });
    ASSERT_EQ(steps.run(), 0);
  }
  void drop(const std::vector<std::filesystem::path>& files) {
    QMimeData data;
    QList<QUrl> addresses;
    for (const std::filesystem::path& each : files)
      addresses += QUrl::fromLocalFile(QString::fromStdString(each.string()));
    data.setUrls(addresses);
    QDragEnterEvent before({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window_.get(), &before);
    EXPECT_TRUE(before.isAccepted());
    QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window_.get(), &event);
    EXPECT_TRUE(event.isAccepted());
    QCoreApplication::processEvents();
  }
};

}  // namespace vlclientui::test
