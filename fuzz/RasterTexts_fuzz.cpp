// Input: any text, as the packet of an editor (XMP), as a world file, as the journal of an export, and as the
// file of registered classes.

#include <cmath>

#include <gdal_priv.h>

#include "Require.h"
#include "client/output/ExportJournal.h"
#include "client/raster/FileMetadata.h"
#include "client/raster/RasterReader.h"
#include "client/raster/XmpProperties.h"
#include "contracts/RuntimeFailure.h"
#include "library/Registration.h"
#include "platform/LibXmlService.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

void checkPacket(const std::string& text, const XmlService& xml) {
  client::FileMetadata metadata{{client::elementName(text.substr(0, 20)), {}}};
  for (const auto& [name, value] : client::readXmpProperties(text, xml))
    metadata.front().items.emplace_back(client::elementName(name), value);
  std::string written = "<All>";
  client::writeMetadata(written, metadata);
  require(xml.createDocument()->loadXml(written + "</All>"), "metadata make a document");
}

void makeRaster(const std::filesystem::path& file) {
  GDALAllRegister();
  GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("PNG");
  GDALDriver& memory = *GetGDALDriverManager()->GetDriverByName("MEM");
  const GDALDatasetUniquePtr pixels(memory.Create("", 4, 3, 1, GDT_Byte, nullptr));
  const GDALDatasetUniquePtr written(
      driver.CreateCopy(file.c_str(), pixels.get(), 0, nullptr, nullptr, nullptr));
  require(written != nullptr, "a raster can be made");
}

void checkWorldFile(const std::string& text, const fuzzing::ScratchFolder& folder) {
  const auto raster = folder.path() / "a.png";
  if (!std::filesystem::exists(raster)) makeRaster(raster);
  static_cast<void>(folder.file("a.pgw", text));
  const auto read = client::readRasterFacts(raster);
  const auto* const facts = std::get_if<client::RasterFacts>(&read);
  if (facts == nullptr) return;
  require(std::isfinite(facts->envelope.xMin) && facts->envelope.xMin < facts->envelope.xMax,
          "it has a width");
  require(std::isfinite(facts->envelope.yMin) && facts->envelope.yMin < facts->envelope.yMax,
          "it has a height");
  require(facts->columns > 0 && facts->rows > 0, "it has pixels");
}

void checkJournal(const std::string& text) {
  const auto journal = client::readJournal(text);
  require(journal.wholeBytes <= text.size(), "what is whole is a beginning");
  require(journal.isBegun || journal.blocks.empty(), "the identity comes first");
  if (!journal.isBegun) return;
  std::string written = client::journalLine(journal.identity);
  for (const auto& block : journal.blocks) written += client::journalLine(block);
  const auto again = client::readJournal(written);
  require(again.identity == journal.identity && again.blocks == journal.blocks, "a journal reads the same");
}

void checkClasses(const std::string& text, const fuzzing::ScratchFolder& folder) {
  for (const Registration& each : readRegistrations(folder.file("classes.tsv", text)))
    require(!each.name.empty() && !each.classIdentity.empty(), "a class has a name and an identity");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::LibXmlService xml{platform::PathTranslation("/")};
  static const fuzzing::ScratchFolder folder;
  const std::string text = fuzzing::textOf(data, size);
  checkPacket(text, xml);
  checkWorldFile(text, folder);
  checkJournal(text);
  checkClasses(text, folder);
  return 0;
}
