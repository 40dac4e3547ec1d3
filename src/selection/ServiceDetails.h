#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "contracts/XmlDocument.h"
#include "selection/ServerInfoDocument.h"

namespace vlclientui {

/// What a row of the service list shows beside the name.
struct ServiceTexts {
  std::string geographicRegion;
  std::string pixelUnit;
  std::string pixelSource;
  std::string colorSpace;
  std::string pixelType;
  std::string bitDepth;
  std::string bands;

  bool operator==(const ServiceTexts&) const = default;
};

/// Label of a colour space code; codes are exact strings, and any other code has no label.
[[nodiscard]] std::string ColorSpaceName(const std::string& code);

/// The look-up of one display: reads the server info document once and answers row by row.
class ServiceDetails {
 public:
  explicit ServiceDetails(const XmlDocument& serverInfo);

  /// Fills the texts of the first service in document order whose name equals the whole name or the leaf
  /// name, exactly. The texts go from row to row on purpose: an element that the service lacks leaves its
  /// text as it stood. Only the services passed by before the match empty the texts, so that a match at
  /// the very first service keeps the previous row's; no match at all empties them.
  void read(const std::string& leafName, const std::string& wholeName, ServiceTexts& texts) const;

 private:
  [[nodiscard]] std::optional<std::size_t> firstOf(const std::string& name) const;

  std::vector<ServiceRecord> services_;
  std::unordered_map<std::string, std::size_t> firstByName_;
};

}  // namespace vlclientui
