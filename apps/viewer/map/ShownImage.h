#pragma once

#include <QImage>
#include <QString>

#include "host/ServiceView.h"

namespace vlclientui::viewer {

/// What the map shows of the picked service.
struct ShownImage {
  QString reference;  ///< empty for none
  QImage picture;     ///< null where the map shows no part of the service
  host::GeographicCorners corners = {};
  host::ServiceMarks marks = {};
};

}  // namespace vlclientui::viewer
