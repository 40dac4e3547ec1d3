#include "selection/ListDocuments.h"

#include <array>

#include "documents/TextCase.h"
#include "selection/ServiceDetails.h"

namespace vlclientui {

namespace {

constexpr const char* parentEntry = "..";
constexpr std::array<const char*, 8> replacedByUnderscore{"[", "]", "(", ")", "<", ">", "\u2039", "+"};

std::string folderRow(XmlDocument& rows, const std::string& folder) {
  const XmlNodePtr row = rows.createElement(XmlNameFromLabel(folder));
  row->setAttribute("icon", "fldr");
  row->setAttribute("displayName", folder);
  return row->xml();
}

std::string serviceRow(XmlDocument& rows, const std::string& name, const ServiceTexts& texts) {
  const XmlNodePtr row = rows.createElement(XmlNameFromLabel(name));
  row->setAttribute("icon", "VLSERVICE");
  row->setAttribute("displayName", name);
  row->setAttribute("Geographic_Region", texts.geographicRegion);
  row->setAttribute("Pixel_Unit", texts.pixelUnit);
  row->setAttribute("Pixel_Source", texts.pixelSource);
  row->setAttribute("Color_Space", texts.colorSpace);
  row->setAttribute("Pixel_Type", texts.pixelType);
  row->setAttribute("Bit_Depth", texts.bitDepth);
  row->setAttribute("Bands", texts.bands);
  return row->xml();
}

std::string serviceRows(const XmlService& xml, const ServiceDetails& details,
                        const std::vector<std::string>& files, const std::vector<std::string>& wholeNames) {
  const auto rows = xml.createDocument();
  std::string joined;
  ServiceTexts texts;
  for (std::size_t i = 0; i < files.size(); ++i) {
    details.read(files[i], i < wholeNames.size() ? wholeNames[i] : std::string(), texts);
    joined += serviceRow(*rows, files[i], texts);
  }
  return joined;
}

}  // namespace

std::string XmlNameFromLabel(const std::string& label) {
  const bool numeric = !label.empty() && label.front() >= '0' && label.front() <= '9';
  std::string name = replacedAll(numeric ? "_" + label : label, " ", "");
  for (const char* const character : replacedByUnderscore) name = replacedAll(name, character, "_");
  return name;
}

std::string BuildListValues(const XmlService& xml, const DetailsSource& details,
                            const std::vector<std::string>& folders, const std::vector<std::string>& files,
                            const std::vector<std::string>& wholeNames) {
  const auto rows = xml.createDocument();
  std::string values = "<list_values>";
  for (const std::string& folder : folders) {
    if (folder != parentEntry && !folder.empty()) values += folderRow(*rows, folder);
  }
  if (!files.empty()) values += serviceRows(xml, details(), files, wholeNames);
  return values + "</list_values>";
}

}  // namespace vlclientui
