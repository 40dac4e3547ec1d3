#pragma once

#include <QDialog>
#include <vector>

#include "client/facade/CatalogueServerClient.h"

namespace vlclientui::viewer {

/// What the list of a server leaves out, each with its reason.
class LeftOutWindow : public QDialog {
  Q_OBJECT

 public:
  explicit LeftOutWindow(const std::vector<client::LeftOut>& leftOut, QWidget* parent = nullptr);
};

}  // namespace vlclientui::viewer
