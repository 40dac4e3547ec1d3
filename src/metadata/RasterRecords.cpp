#include "metadata/RasterRecords.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/TextCase.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataPaths.h"

namespace vlclientui {

namespace {

constexpr const char* hiddenMark = "* ";

/// Reads a record as a document of its own. A record with a raster inside needs a slower search for the same
/// answer.
class RecordReader {
 public:
  explicit RecordReader(bool nested)
      : prefix_(nested ? "descendant-or-self::Raster/" : ""),
        id_(prefix_ + metadataPath::idOfRaster),
        name_(prefix_ + metadataPath::nameOfRaster),
        visible_(prefix_ + metadataPath::visibleOfRaster) {}

  [[nodiscard]] RasterRecord read(const XmlNode& raster) const {
    return {readText(raster, id_), readText(raster, name_), readText(raster, visible_), raster.xml()};
  }

 private:
  std::string prefix_;
  std::string id_;
  std::string name_;
  std::string visible_;
};

}  // namespace

RasterRecords::RasterRecords(std::string imageMetadataXml) : source_(std::move(imageMetadataXml)) {
  const auto document = parsedDocument(source_);
  const auto rasters = document->selectNodes(metadataPath::rasters);
  const bool nested = document->selectNodes(metadataPath::anyRaster).size() != rasters.size();
  const RecordReader reader(nested);
  records_.reserve(rasters.size());
  for (const XmlNodePtr& raster : rasters) records_.push_back(reader.read(*raster));
  anyMetadata_ = document->selectSingleNode(metadataPath::anyRasterMetadata) != nullptr;
  processAvailable_ = readText(*document, metadataPath::processAvailable);
}

void RasterIds::add(const std::string& key, std::string id) {
  if (!ids_.try_emplace(key, std::move(id)).second) {
    throw RuntimeFailure("The key '" + key + "' is taken");
  }
}

const std::string& RasterIds::at(const std::string& key) const {
  const auto found = ids_.find(key);
  if (found == ids_.end()) throw RuntimeFailure("No raster '" + key + "'", FailureKind::InvalidIndex);
  return found->second;
}

std::string rasterKey(const std::string& name, const std::string& id) { return name + " - " + id; }

std::string rasterCaption(const std::string& key, bool visible) { return visible ? key : hiddenMark + key; }

std::string keyOfCaption(std::string_view caption) { return replacedAll(caption, hiddenMark, ""); }

}  // namespace vlclientui
