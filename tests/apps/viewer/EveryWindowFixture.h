#pragma once

#include <QTabBar>
#include <QTreeWidget>
#include <functional>
#include <string>
#include <vector>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {

/// A person who goes through every window of the viewer and looks at each side of it.
class EveryWindowFixture : public ViewerDocksFixture {
 protected:
  /// @param name of the side, for a picture or a complaint.
  using Look = std::function<void(QWidget& window, const QString& name)>;

  void visitEveryWindow(const Look& look);
  /// What a window itself shows, without the windows over it.
  [[nodiscard]] static std::vector<QWidget*> shownIn(const QWidget& window);

 private:
  void visitMainWindow();
  void visitColors();
  void visitAddServices();
  void visitProperties();
  void visitExport();
  void refuseToExport();
  void visitSmallOnes();
  void visitMessages();
  void visitConnections();
  /// Looks at a window once all that was asked for it has been laid out.
  void lookAt(const QString& name, const std::function<QWidget*()>& window);
  void lookAtModal(const QString& name);
  void goToNode(int node);
  void goToTab(const char* bar, int tab);
  void leave();

  Look look_;
};

}  // namespace vlclientui::test
