#include "client/raster/FileMetadata.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>
#include <system_error>

#include <cpl_string.h>
#include <gdal_priv.h>

#include "client/raster/DocumentWriter.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Subdatasets.h"
#include "client/raster/Text.h"
#include "client/raster/XmpProperties.h"
#include "contracts/Utf8.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t longestText = 4096;
constexpr std::string_view exifPrefix = "EXIF_";

// Sections that GDAL makes itself, that are read elsewhere, or that hold no readable text.
constexpr std::array<std::string_view, 7> ownSections = {
    "", "EXIF", "xml:XMP", "IMAGE_STRUCTURE", "DERIVED_SUBDATASETS", "COLOR_PROFILE", "ProxyOverviewRequest"};

void add(MetadataSection& section, const std::string& name, const std::string& text) {
  std::string line = trimmed(utf8FromAny(text));
  if (line.empty()) return;
  if (line.size() > longestText) {
    line = std::string(utf8Start(line, longestText)) + "…";
  }
  section.items.emplace_back(elementName(name), line);
}

void addItems(MetadataSection& section, char** texts, std::string_view prefix = {}) {
  for (int i = 0; texts != nullptr && texts[i] != nullptr; ++i) {
    const std::string_view item = texts[i];
    const std::size_t equals = item.find('=');
    if (equals == std::string_view::npos) continue;
    add(section, std::string(prefix) + std::string(item.substr(0, equals)),
        std::string(item.substr(equals + 1)));
  }
}

std::string itemOf(GDALMajorObject& object, const char* name, const char* domain = "") {
  const char* text = object.GetMetadataItem(name, domain);
  return text != nullptr ? text : "";
}

std::string sizeText(int width, int height) { return std::to_string(width) + " x " + std::to_string(height); }

std::string blockSizeOf(GDALRasterBand& band) {
  int width = 0;
  int height = 0;
  band.GetBlockSize(&width, &height);
  return sizeText(width, height);
}

std::string overviewsOf(GDALRasterBand& band) {
  std::string out;
  for (int i = 0; i < band.GetOverviewCount(); ++i) {
    GDALRasterBand* overview = band.GetOverview(i);
    if (overview == nullptr) continue;
    out += (out.empty() ? "" : ", ") + sizeText(overview->GetXSize(), overview->GetYSize());
  }
  return out;
}

std::string numberOrWord(double value) {
  if (std::isnan(value)) return "not a number";
  return std::isfinite(value) ? numberText(value) : "infinite";
}

std::string noDataOf(GDALRasterBand& band) {
  int isSet = 0;
  const double value = band.GetNoDataValue(&isSet);
  return isSet != 0 ? numberOrWord(value) : "";
}

MetadataSection fileSection(GDALDataset& dataset, const std::filesystem::path& file) {
  MetadataSection section{"File", {}};
  std::error_code error;
  const std::filesystem::path onDisk = fileOnDisk(file);
  const auto size = std::filesystem::file_size(onDisk, error);
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  add(section, "FileName", onDisk.filename().string());
  add(section, "PathInFile", innerPathOf(file));
  if (!error) add(section, "FileSize", std::to_string(size));
  if (dataset.GetDriver() != nullptr) add(section, "Format", itemOf(*dataset.GetDriver(), GDAL_DMD_LONGNAME));
  add(section, "Columns", std::to_string(dataset.GetRasterXSize()));
  add(section, "Rows", std::to_string(dataset.GetRasterYSize()));
  add(section, "Bands", std::to_string(dataset.GetRasterCount()));
  add(section, "PixelType", GDALGetDataTypeName(band.GetRasterDataType()));
  add(section, "BlockSize", blockSizeOf(band));
  add(section, "Compression", itemOf(dataset, "COMPRESSION", "IMAGE_STRUCTURE"));
  add(section, "Interleave", itemOf(dataset, "INTERLEAVE", "IMAGE_STRUCTURE"));
  add(section, "NoData", noDataOf(band));
  add(section, "Overviews", overviewsOf(band));
  return section;
}

void append(std::string& line, const std::string& label, const std::string& text) {
  if (text.empty()) return;
  line += (line.empty() ? "" : "; ") + label + (label.empty() ? "" : " ") + text;
}

std::string bandLine(GDALRasterBand& band) {
  std::string line;
  append(line, "", trimmed(utf8FromAny(band.GetDescription())));
  if (band.GetColorInterpretation() != GCI_Undefined) {
    append(line, "shown as", GDALGetColorInterpretationName(band.GetColorInterpretation()));
  }
  append(line, "type", GDALGetDataTypeName(band.GetRasterDataType()));
  append(line, "unit", trimmed(utf8FromAny(band.GetUnitType())));
  append(line, "no data", noDataOf(band));
  append(line, "minimum", itemOf(band, "STATISTICS_MINIMUM"));
  append(line, "maximum", itemOf(band, "STATISTICS_MAXIMUM"));
  append(line, "mean", itemOf(band, "STATISTICS_MEAN"));
  append(line, "standard deviation", itemOf(band, "STATISTICS_STDDEV"));
  return line;
}

MetadataSection bandSection(GDALDataset& dataset) {
  MetadataSection section{"Bands", {}};
  for (int number = 1; number <= dataset.GetRasterCount(); ++number) {
    add(section, "Band_" + std::to_string(number), bandLine(*dataset.GetRasterBand(number)));
  }
  return section;
}

// Some formats have a domain for the camera's items, others mix them with the ordinary ones.
void addTags(FileMetadata& metadata, GDALDataset& dataset) {
  MetadataSection all{"Tags", {}};
  MetadataSection tags{"Tags", {}};
  MetadataSection exif{"Exif", {}};
  addItems(all, dataset.GetMetadata());
  for (auto& item : all.items) {
    (item.first.starts_with(exifPrefix) ? exif : tags).items.push_back(std::move(item));
  }
  addItems(exif, dataset.GetMetadata("EXIF"));
  for (auto& [name, text] : exif.items) {
    if (name.starts_with(exifPrefix)) name = elementName(name.substr(exifPrefix.size()));
  }
  metadata.push_back(std::move(tags));
  metadata.push_back(std::move(exif));
}

MetadataSection xmpSection(GDALDataset& dataset, const XmlService& xml) {
  MetadataSection section{"Xmp", {}};
  char** texts = dataset.GetMetadata("xml:XMP");
  if (texts == nullptr || texts[0] == nullptr) return section;
  for (const auto& [name, text] : readXmpProperties(texts[0], xml)) add(section, name, text);
  return section;
}

MetadataSection domainSection(GDALDataset& dataset) {
  MetadataSection section{"Domains", {}};
  const CPLStringList domains(dataset.GetMetadataDomainList());
  for (int i = 0; i < domains.Count(); ++i) {
    const std::string domain = domains[i];
    if (std::find(ownSections.begin(), ownSections.end(), domain) != ownSections.end()) continue;
    char** texts = dataset.GetMetadata(domain.c_str());
    const bool isOneText = domain.starts_with("xml:") || domain.starts_with("json:");
    if (isOneText && texts != nullptr && texts[0] != nullptr) {
      add(section, domain, texts[0]);
    } else {
      addItems(section, texts, domain + "_");
    }
  }
  return section;
}

bool mayStandInName(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x80 && (std::isalnum(byte) != 0 || c == '_' || c == '-' || c == '.');
}

bool isReserved(const std::string& name) {
  return startsIgnoringCase(name, "xml") || name == "X_DEF" || name == "xfd_header";
}

}  // namespace

FileMetadata readFileMetadata(const std::filesystem::path& file, const XmlService& xml) {
  const GdalScope scope;
  const DatasetPtr dataset = openRasterAt(file);
  FileMetadata metadata;
  if (!dataset || dataset->GetRasterCount() == 0) return metadata;
  metadata.push_back(fileSection(*dataset, file));
  metadata.push_back(bandSection(*dataset));
  addTags(metadata, *dataset);
  metadata.push_back(xmpSection(*dataset, xml));
  metadata.push_back(domainSection(*dataset));
  std::erase_if(metadata, [](const MetadataSection& section) { return section.items.empty(); });
  return metadata;
}

std::string elementName(const std::string& text) {
  std::string name = text;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !mayStandInName(c); }, '_');
  const bool startsWell = !name.empty() && (std::isalpha(static_cast<unsigned char>(name[0])) != 0);
  return startsWell && !isReserved(name) ? name : "_" + name;
}

void writeMetadata(std::string& out, const FileMetadata& metadata) {
  for (const MetadataSection& section : metadata) {
    const Element element(out, section.name);
    for (const auto& [name, text] : section.items) writeText(out, name, text);
  }
}

}  // namespace vlclientui::client
