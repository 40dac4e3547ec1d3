// What the viewer adds to the add-service window, and how it waits for lists.
#include <QAbstractItemView>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeWidget>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "apps/viewer/ViewerDocksFixture.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "viewer/list/PickerClient.h"

namespace vlclientui::test {
namespace {

using viewer::person::find;
using viewer::person::press;

/// A server that takes requests and never answers.
class SilentPort {
 public:
  SilentPort() {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(place);
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&place), size) != 0 || ::listen(socket_, 8) != 0)
      throw std::runtime_error("no port");
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&place), &size);
    number_ = ntohs(place.sin_port);
  }
  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;
  ~SilentPort() { ::close(socket_); }

  [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(number_); }

 private:
  int socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
  int number_ = 0;
};

class Picker : public ViewerDocksFixture {
 protected:
  [[nodiscard]] static QAbstractItemView& list() { return find<QAbstractItemView>(modalWindow(), ""); }
  [[nodiscard]] static QString place() { return find<QLabel>(modalWindow(), "PickerPlace").text(); }
  [[nodiscard]] static QToolButton& back() { return find<QToolButton>(modalWindow(), "PickerBack"); }
  [[nodiscard]] static QToolButton& leftOut() {
    return *modalWindow().findChild<QToolButton*>("PickerLeftOut");
  }
  static int rowOf(const QString& name) {
    for (int row = 0; row < list().model()->rowCount(); ++row)
      if (list().model()->index(row, 0).data().toString() == name) return row;
    throw viewer::person::Astray("there is no row " + name.toStdString());
  }
  void enter(const QString& folder) {
    act([folder] { viewer::person::doubleClickRow(list(), rowOf(folder)); });
  }
  void openPicker() {
    act([this] { action("AddServices").trigger(); });
    see("the services", [] { return list().model()->rowCount() > 0; });
  }
  void goToServer(const std::string& server) {
    act([server] {
      auto& box = find<QComboBox>(modalWindow(), "uiTxtBoxServerName");
      viewer::person::typeInto(*box.lineEdit(), QString::fromStdString(server));
      press(*box.lineEdit(), Qt::Key_Return);
    });
  }
  void leave() {
    act([] { press(modalWindow(), Qt::Key_Escape); });
    seeNoWindow();
    run();
  }
};

TEST_F(Picker, TellsTheFolderAndLeadsBack) {
  openPicker();
  act([] {
    EXPECT_EQ(place(), "All folders");
    EXPECT_FALSE(back().isEnabled());
    EXPECT_FALSE(leftOut().isVisible());
  });
  enter("Imagery");
  see("the folder", [] { return place() == "In Imagery"; });
  enter("Valley");
  see("the folder below", [] { return place() == "In Imagery / Valley"; });
  act([] {
    keepPicture(modalWindow(), "picker-place");
    viewer::person::click(back());
  });
  see("the folder above", [] { return place() == "In Imagery" && rowOf("Valley") >= 0; });
  act([] { press(list(), Qt::Key_Backspace); });
  see("the root", [] { return place() == "All folders" && !back().isEnabled(); });
  leave();
}

TEST_F(Picker, BeginsAtTheRootOfAnotherServer) {
  openPicker();
  enter("Imagery");
  see("the folder", [] { return place() == "In Imagery"; });
  goToServer(samplesFolder() + "/World");
  see("the other server", [] { return list().model()->rowCount() == 1 && place() == "All folders"; });
  leave();
}

TEST_F(Picker, HasRoomForItsListAndColumnsThatFit) {
  openPicker();
  act([] {
    const auto& selected = find<QListView>(modalWindow(), "ListBox");
    EXPECT_GT(list().height(), 2 * selected.height());
    EXPECT_GE(list().height(), 10 * list().visualRect(list().model()->index(0, 0)).height());
    EXPECT_EQ(list().horizontalScrollBar()->maximum(), 0) << modalWindow().width();
    keepPicture(modalWindow(), "picker-room");
  });
  leave();
}

TEST_F(Picker, TellsWhatWasLeftOutAndWhyByOneClick) {
  std::filesystem::create_directory(file("rasters"));
  std::filesystem::copy(samplesFolder() + "/World/EGM96_Geoid.tif", file("rasters/good.tif"));
  std::ofstream(file("rasters/broken.tif")) << "II*";
  openPicker();
  goToServer(file("rasters").string());
  see("what was left out", [] { return leftOut().isVisible() && leftOut().text().startsWith("1 left out"); });
  act([] {
    keepPicture(modalWindow(), "picker-left-out");
    viewer::person::click(leftOut());
  });
  see("the reasons", [] { return window("Left out of the list").isVisible(); });
  act([] {
    const auto& files = find<QTreeWidget>(modalWindow(), "LeftOutFiles");
    EXPECT_EQ(files.topLevelItemCount(), 1);
    EXPECT_TRUE(files.topLevelItem(0)->text(0).endsWith("broken.tif"));
    EXPECT_FALSE(files.topLevelItem(0)->text(1).isEmpty());
    keepPicture(modalWindow(), "left-out");
    press(modalWindow(), Qt::Key_Escape);
  });
  see("the picker", [] { return modalWindow().findChild<QLabel*>("PickerPlace") != nullptr; });
  leave();
}

TEST_F(Picker, LetsTheHostLiveWhileAListIsRead) {
  const SilentPort silent;
  viewer::PickerClient client(host_.catalogue, [](const auto&) {});
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] {
    ++ticks;
    QWidget* const waiting = viewer::person::modalWindow("Waiting for a server");
    if (waiting != nullptr && ticks > 20) click(*waiting, "CancelWait");
  });
  ticking.start(10);
  const std::string request =
      "<Vorlane><Client><ServerInfo><Request><Server>" + silent.address() +
      "/wcs</Server><MetadataLevel>1</MetadataLevel></Request></ServerInfo></Client></Vorlane>";
  EXPECT_EQ(client.GetServerInfo(request), "");
  EXPECT_GT(ticks, 20);
}

TEST_F(Picker, TellsWhyAServerDoesNotAnswer) {
  std::string heard;
  const SilenceListener listener([&heard](const SilentEnd& end) { heard += end.reason + "\n"; });
  viewer::PickerClient client(host_.catalogue, [](const auto&) {});
  const std::string request =
      "<Vorlane><Client><ServerInfo><Request><Server>http://127.0.0.1:9/wcs</Server>"
      "<MetadataLevel>1</MetadataLevel></Request></ServerInfo></Client></Vorlane>";
  EXPECT_EQ(client.GetServerInfo(request), "");
  EXPECT_NE(heard.find("127.0.0.1:9"), std::string::npos) << heard;
}

TEST_F(Picker, TellsARequestThatIsNoDocument) {
  viewer::PickerClient client(host_.catalogue, [](const auto&) {});
  EXPECT_THROW(static_cast<void>(client.GetServerInfo("<")), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::test
