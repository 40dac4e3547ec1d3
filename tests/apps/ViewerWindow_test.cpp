// The list of services of the viewer, and the files that are opened into it.

#include <QComboBox>
#include <QDockWidget>

#include "apps/ViewerDocksFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using viewer::person::find;
using viewer::person::press;

constexpr const char* kGeoid = "World/EGM96_Geoid";
constexpr const char* kGeoidPicked =
    "<SelectedImageServices><Name>ImageService://127.0.0.1/World/EGM96_Geoid</Name></SelectedImageServices>";

std::string lockedTo(const std::string& raster) {
  return "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>" + raster +
         "</LockImageID></ImageServiceProperties></Vorlane>";
}

class ViewerWindow : public ViewerDocksFixture {
 protected:
  [[nodiscard]] int rows() const { return window_->services().rowCount(); }
  [[nodiscard]] QListView& list() const { return find<QListView>(*window_, "ServiceList"); }
  void saveLockedTo(const std::string& raster, const char* name) {
    window_->drawWith(lockedTo(raster));
    seeDrawn();
    ASSERT_TRUE(window_->pickedService()->SaveProperties(file(name).string()));
  }
  void openSaved() {
    window_->openFile(file("locked.VLRef"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
    seeDrawn();
  }
};

TEST_F(ViewerWindow, DeleteInAPaneRemovesNoService) {
  pickOverlaps();
  open("PropertiesDock");
  window_->activateWindow();
  auto& method = find<QComboBox>(dock("PropertiesDock"), "MosaicMethod");
  method.setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(method.hasFocus());
  press(method, Qt::Key_Delete);
  EXPECT_EQ(rows(), 1);
}

TEST_F(ViewerWindow, DeleteInTheListRemovesThePickedService) {
  pickSample(kGeoid);
  pickSample(kOverlaps);
  list().setFocus();
  press(list(), Qt::Key_Delete);
  EXPECT_EQ(rows(), 1);
}

TEST_F(ViewerWindow, TellsThatTheFolderOfTheDocumentCannotBeMadeAndListsNothing) {
  std::ofstream(file("plain")) << "no folder";
  viewer::ViewerWindow other(host_, file("plain") / "documents");
  EXPECT_THROW(other.takeSelectedServices(kGeoidPicked), RuntimeFailure);
  EXPECT_EQ(other.services().rowCount(), 0);
}

TEST_F(ViewerWindow, TellsThatTheDocumentCannotBeWrittenAndListsNothing) {
  fs::create_directories(window_->selectedServicesFile());
  EXPECT_THROW(window_->takeSelectedServices(kGeoidPicked), RuntimeFailure);
  EXPECT_EQ(rows(), 0);
}

TEST_F(ViewerWindow, AFileThatWasSavedAnewIsReadAnewWhenItIsOpenedAgain) {
  pickOverlaps();
  saveLockedTo("2", "second.VLRef");
  saveLockedTo("1", "locked.VLRef");
  openSaved();
  ASSERT_EQ(servicePropertiesAt("LockImageID"), "1");
  const QImage picture = window_->services().rows().back().service.picture;
  fs::copy_file(file("second.VLRef"), file("locked.VLRef"), fs::copy_options::overwrite_existing);
  openSaved();
  EXPECT_EQ(servicePropertiesAt("LockImageID"), "2");
  EXPECT_NE(window_->services().rows().back().service.picture, picture);
  EXPECT_EQ(imageColor(), kGreen);
  EXPECT_EQ(rows(), 2);
  EXPECT_EQ(list().currentIndex().row(), 1);
}

}  // namespace
}  // namespace vlclientui::test
