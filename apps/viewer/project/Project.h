#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "client/facade/ServiceCoordinates.h"
#include "host/Services.h"

namespace vlclientui::viewer {

/// How a service is shown, for as long as it is in the list.
struct ServiceState {
  std::string name;  ///< a person's own; empty for the service's title
  bool isVisible = true;
  double opacity = 1;      ///< 0 to 1
  std::string properties;  ///< what was applied, viewpoint and lock among it: a document; empty for its own
  std::string stretch;     ///< a person's own choice of contrast and colors, one line; empty for none

  bool operator==(const ServiceState&) const = default;
};

/// A service of a project.
struct ProjectService {
  std::string reference;  ///< a service of a server, or the path of a file; without secrets
  ServiceState state;

  bool operator==(const ProjectService&) const = default;
};

/// What a person has on the map. A plain value; ProjectDocument.h writes and reads it.
struct Project {
  std::vector<ProjectService> services;  ///< the top one first
  std::optional<std::size_t> picked;
  host::GeographicEnvelope view;  ///< of the map, WGS 84 degrees
  std::string system;             ///< of the map: "EPSG:2056", or a whole definition; empty for degrees
  /// The view in coordinates of that system, which tell it more closely. Nothing for degrees.
  std::optional<client::Bounds> area;
  /// Of a session: the file of the project that it is one of, native; empty for none.
  std::string file = {};

  bool operator==(const Project&) const = default;
};

}  // namespace vlclientui::viewer
