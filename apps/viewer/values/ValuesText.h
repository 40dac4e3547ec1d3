#pragma once

#include <QColor>
#include <QString>
#include <vector>

#include "client/mapping/ValuesAt.h"

namespace vlclientui::viewer {

/// What was read of a service at a place.
struct ReadValues {
  enum class State { Reading, Read, Failed, GivenUp };

  QString service;  ///< shown name
  State state = State::Reading;
  std::vector<client::SourceValues> sources = {};  ///< the topmost first
  QString problem = {};                            ///< why it failed
};

/// A line of the values pane, with those below it.
struct ValueLine {
  QString name;
  QString value = {};
  std::vector<ValueLine> lines = {};
  QColor color = {};      ///< of a class; else invalid
  bool isStrong = false;  ///< a service, or the source that the map shows
};

/// Of a service: its values, which are those of the source that the map shows, and, where there are several,
/// each source with its id, attributes and values.
[[nodiscard]] ValueLine valueLineOf(const ReadValues& read);

}  // namespace vlclientui::viewer
