#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "contracts/XmlDocument.h"

namespace vlclientui {

/// A raster record of an image metadata document. Missing values are nothing.
struct RasterRecord {
  std::optional<std::string> id;  ///< records without one are skipped
  std::optional<std::string> name;
  std::optional<std::string> visible;
  std::string xml;  ///< outer XML
};

/// What the raster pages need of an image metadata document, read in one parse. Keeps texts, not the
/// document, so a click on one of thousands of rasters parses only that one's record.
class RasterRecords {
 public:
  RasterRecords() = default;
  explicit RasterRecords(std::string imageMetadataXml);

  [[nodiscard]] bool isOf(const std::string& imageMetadataXml) const { return source_ == imageMetadataXml; }
  /// In document order.
  [[nodiscard]] const std::vector<RasterRecord>& records() const { return records_; }
  /// Whether any raster of the document has metadata.
  [[nodiscard]] bool anyMetadata() const { return anyMetadata_; }
  /// The text that tells whether process data is available.
  [[nodiscard]] const std::optional<std::string>& processAvailable() const { return processAvailable_; }

 private:
  std::string source_;
  std::vector<RasterRecord> records_;
  bool anyMetadata_ = false;
  std::optional<std::string> processAvailable_;
};

/// Raster ids by key.
class RasterIds {
 public:
  /// @throws RuntimeFailure for a key that is in use.
  void add(const std::string& key, std::string id);
  /// @throws RuntimeFailure (InvalidIndex) for an unknown key.
  [[nodiscard]] const std::string& at(const std::string& key) const;
  void clear() { ids_.clear(); }

 private:
  std::unordered_map<std::string, std::string> ids_;
};

/// "{name} - {id}".
[[nodiscard]] std::string rasterKey(const std::string& name, const std::string& id);
/// The key, with "* " in front for an invisible raster.
[[nodiscard]] std::string rasterCaption(const std::string& key, bool visible);
/// Removes every "* ", even one inside a name; such a caption matches no key then.
[[nodiscard]] std::string keyOfCaption(std::string_view caption);

}  // namespace vlclientui
