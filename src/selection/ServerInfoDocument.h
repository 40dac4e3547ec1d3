#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "contracts/XmlDocument.h"

/// Reads the answer of a server: providers, their services, and what is told of each service.
namespace vlclientui {

/// The element with one child per provider; null when the document has none.
[[nodiscard]] XmlNodePtr findProviders(const XmlDocument& serverInfo);

/// A service's extent, in the coordinates of the geographic envelopes.
struct ServiceExtent {
  double xMin = 0;
  double xMax = 0;
  double yMin = 0;
  double yMax = 0;
};

/// True unless the two are strictly apart: overlap counts, and so does touching along an edge.
[[nodiscard]] bool IsInViewExtent(const ServiceExtent& view, const ServiceExtent& service);

using ExtentTest = std::function<bool(const ServiceExtent&)>;

/// Names of all services in document order; a service without `Name` gives none. With a test, services whose
/// extent fails it are left out; an envelope value that is missing keeps the number of the service before.
/// @returns nothing when the document has no element for its providers.
/// @throws RuntimeFailure for an envelope value that is no number.
[[nodiscard]] std::optional<std::vector<std::string>> readServiceNames(const XmlDocument& serverInfo,
                                                                       const ExtentTest& test = {});

/// The title of the service of that whole name, compared in any case; empty when there is none.
[[nodiscard]] std::string FindServiceTitle(const XmlDocument& serverInfo, const std::string& shortName);
/// Outer XML of its `ImageServiceInfo`, likewise.
[[nodiscard]] std::string FindServiceInfoXml(const XmlDocument& serverInfo, const std::string& shortName);

/// Reads below one service as if it were a document of its own: paths begin with its own element.
class ServiceRecord {
 public:
  /// @param nested whether services stand inside services anywhere in the document; then the first match
  /// in document order may lie deeper, and the reads search for it.
  ServiceRecord(XmlNodePtr service, bool nested);

  /// `//Service/` + path.
  [[nodiscard]] XmlNodePtr find(const std::string& path) const;
  /// Only services that have it count in the look-ups.
  [[nodiscard]] bool hasInfoName() const;
  /// Whole name with "/" between folders; empty when there is none.
  [[nodiscard]] std::string name() const;

 private:
  XmlNodePtr service_;
  bool searchDeep_;
};

/// True when a service stands inside a service.
[[nodiscard]] bool hasNestedServices(const XmlDocument& serverInfo);

}  // namespace vlclientui
