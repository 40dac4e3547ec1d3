#pragma once

#include <QAbstractItemView>
#include <filesystem>
#include <string>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {

/// What a person does with a server in the viewer, whatever kind of server it is.
class ViewerOfServers : public ViewerDocksFixture {
 protected:
  static QString firstService() { return listedServices().model()->index(0, 0).data().toString(); }

  /// Opens the window of services and types a server there.
  void typeServer(const std::string& server) {
    act([this] { action("AddServices").trigger(); });
    see("the services", [] { return listedServices().model()->rowCount() > 0; });
    act([server] {
      auto& box = viewer::person::find<QComboBox>(modalWindow(), "uiTxtBoxServerName");
      viewer::person::typeInto(*box.lineEdit(), QString::fromStdString(server));
      viewer::person::press(*box.lineEdit(), Qt::Key_Return);
    });
  }
  /// Looks at the information of the second service, and leaves without one.
  void lookAtInformationAndLeave(const std::string& picture) {
    act([] {
      viewer::person::clickRow(listedServices(), 1);
      click(modalWindow(), "Info");
    });
    see("the information", [] { return viewer::person::modalWindow("Service Properties") != nullptr; });
    act([picture] {
      keepPicture(modalWindow(), picture.c_str());
      modalWindow().close();
    });
    see("the services again", [] { return modalWindow().findChild<QPushButton*>("Info") != nullptr; });
    act([] { viewer::person::press(modalWindow(), Qt::Key_Escape); });
    seeNoWindow();
  }
  /// Exports the picked service to a file of the test, and sees it there.
  void exportTo(const std::string& name) {
    openExport();
    act([this, name] { fill("uiTxtFileName", file(name).string()); });
    act([] { click(exportWindow(), "Command1"); });
    see("the file", [this, name] { return std::filesystem::exists(file(name)); });
    see("what came of it", [] { return QApplication::activeModalWidget() != nullptr; });
    act([] { viewer::person::press(*QApplication::activeModalWidget(), Qt::Key_Escape); });
    seeNoWindow();
  }
};

}  // namespace vlclientui::test
