#pragma once

#include <QString>

#include "host/ServiceView.h"

namespace vlclientui::viewer {

/// What of the picked service the map shows, and the marks that go with it.
struct ShownImage {
  QString reference;     ///< empty for none
  bool isShown = false;  ///< false where the map shows no part of the service
  host::GeographicCorners corners = {};
  host::ServiceMarks marks = {};
};

}  // namespace vlclientui::viewer
