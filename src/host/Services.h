#pragma once

#include <optional>
#include <string>
#include <vector>

#include "contracts/XmlDocument.h"

/// A server's services for hosts with a list of their own, requested as the dialogs do.
#pragma GCC visibility push(default)
namespace vlclientui::host {

/// The request for a server's services, made from the definitions' template. The calling thread needs its
/// platform. @throws RuntimeFailure when the definitions cannot be read or lack the request.
[[nodiscard]] std::string serverInfoRequest(const std::string& server);

/// A rectangle in WGS 84 degrees.
struct GeographicEnvelope {
  /// Western edge.
  double xMin = -180;
  /// Southern edge.
  double yMin = -90;
  /// Eastern edge.
  double xMax = 180;
  /// Northern edge.
  double yMax = 90;

  /// Whether all four edges are equal.
  bool operator==(const GeographicEnvelope&) const = default;
};

/// What a server says about one service. Texts are UTF-8, empty where it says nothing.
struct ServiceDescription {
  std::string name;                            ///< whole name, "/" between folders
  std::string title;                           ///< for a person
  std::string region;                          ///< where it lies, in words
  std::string pixelUnit;                       ///< unit of the values, such as "m"
  std::string pixelSource;                     ///< sensor or product that they come from
  std::string colorSpace;                      ///< a label
  std::string pixelType;                       ///< such as "Byte" or "Float32"
  std::string bitDepth;                        ///< bits of one sample, as text
  std::string bands;                           ///< their number, as text
  std::optional<GeographicEnvelope> envelope;  ///< nothing where the server tells none
};

/// The reference that picks, opens and exports a service.
/// @param server as a person types it. @param name whole, with "/" between folders.
[[nodiscard]] std::string serviceReference(const std::string& server, const std::string& name);

/// The services of a server info document, in its order. Its numbers have a point.
/// @throws RuntimeFailure when the text does not parse or has no list of services.
[[nodiscard]] std::vector<ServiceDescription> readServices(const XmlService& xml,
                                                           const std::string& serverInfo);

}  // namespace vlclientui::host
#pragma GCC visibility pop
