#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "contracts/XmlDocument.h"
#include "selection/ServerInfoDocument.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
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

/// The label of a color space code. Codes must match exactly; an unknown one has an empty label.
[[nodiscard]] std::string ColorSpaceName(const std::string& code);

/// Looks up the details for the list: reads the server info document once, and keeps texts alone, so that the
/// tree need not stay. Then answers row by row.
class ServiceDetails {
 public:
  explicit ServiceDetails(const XmlDocument& serverInfo);

  /// Reads the texts of the first service, in document order, with that whole name or that leaf name.
  /// Deliberate: texts carry over between rows. An element that the service lacks leaves its text unchanged.
  /// Passing a service that does not match empties all texts, so a match at the very first service keeps the
  /// previous row's; without any match they are empty.
  void read(const std::string& leafName, const std::string& wholeName, ServiceTexts& texts) const;

 private:
  [[nodiscard]] std::optional<std::size_t> firstOf(const std::string& name) const;

  /// Of one service; none for what its element lacks.
  struct Entry {
    std::array<std::optional<std::string>, 7> texts;
  };
  [[nodiscard]] static Entry entryOf(const ServiceRecord& service);

  std::vector<Entry> services_;
  std::unordered_map<std::string, std::size_t> firstByName_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
