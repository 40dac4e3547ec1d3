#include "viewer/window/AboutBox.h"

#include <QMessageBox>

#include "host/DesktopWindows.h"
#include "viewer/window/ViewerWindow.h"

namespace vlclientui::viewer {

void showAbout(const host::Installation& installation, QWidget& parent) {
  const QString catalogue = QString::fromStdString(installation.catalogue.string());
  QMessageBox box(&parent);
  box.setObjectName("AboutBox");
  box.setWindowTitle(ViewerWindow::tr("About the viewer"));
  box.setText(ViewerWindow::tr("<b>Viewer %1</b>").arg(VLCLIENTUI_VERSION));
  box.setInformativeText(
      ViewerWindow::tr("A small map program around VLClientUI, the user-interface library for network "
                       "raster services.<br><br>Catalogue: %1")
          .arg(catalogue.toHtmlEscaped()));
  host::openHelpByKey(box, "Using_the_viewer");
  box.exec();
}

}  // namespace vlclientui::viewer
