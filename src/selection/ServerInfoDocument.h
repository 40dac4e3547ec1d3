#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "contracts/XmlDocument.h"

/// Reads a server's answer: providers, their services, and what it says about each.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The element with one child per provider; null when the document has none.
[[nodiscard]] XmlNodePtr findProviders(const XmlDocument& serverInfo);

/// A service's extent, in the coordinates of the geographic envelopes.
struct ServiceExtent {
  /// Western edge.
  double xMin = 0;
  /// Eastern edge.
  double xMax = 0;
  /// Southern edge.
  double yMin = 0;
  /// Northern edge.
  double yMax = 0;
};

/// True when the two overlap or touch.
[[nodiscard]] bool IsInViewExtent(const ServiceExtent& view, const ServiceExtent& service);

/// Whether a service with that extent is taken.
using ExtentTest = std::function<bool(const ServiceExtent&)>;

/// Names of all services in document order; a service without `Name` gives none. With a test, services whose
/// extent fails it are left out; a missing envelope value keeps the number of the service before.
/// @returns nothing when the document has no element for its providers.
/// @throws RuntimeFailure for an envelope value that is not a number.
[[nodiscard]] std::optional<std::vector<std::string>> readServiceNames(const XmlDocument& serverInfo,
                                                                       const ExtentTest& test = {});

/// The title of the service with that whole name, in any case; empty without one.
[[nodiscard]] std::string FindServiceTitle(const XmlDocument& serverInfo, const std::string& shortName);
/// Outer XML of its `ImageServiceInfo`, likewise.
[[nodiscard]] std::string FindServiceInfoXml(const XmlDocument& serverInfo, const std::string& shortName);

/// Reads below one service as if it were the whole document: paths begin with its own element.
class ServiceRecord {
 public:
  /// @param service the element; never null. @param nested whether any service of the document has services
  /// inside. Then the first match in document order may lie deeper, and the reads search for it.
  ServiceRecord(XmlNodePtr service, bool nested);

  /// `//Service/` + path.
  [[nodiscard]] XmlNodePtr find(const std::string& path) const;
  /// The look-ups skip services without it.
  [[nodiscard]] bool hasInfoName() const;
  /// Whole name, with "/" between folders; may be empty.
  [[nodiscard]] std::string name() const;

 private:
  XmlNodePtr service_;
  bool searchDeep_;
};

/// Whether a service has a service inside.
[[nodiscard]] bool hasNestedServices(const XmlDocument& serverInfo);

}  // namespace vlclientui
#pragma GCC visibility pop
