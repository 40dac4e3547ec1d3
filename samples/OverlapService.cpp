#include <array>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

constexpr int side = 160;  // cells of a source, across and down
constexpr double cellSide = 25;
constexpr double step = 1500;  // from one source to the next, so that all three meet
constexpr const char* nameText = "Overlap_Study";

// Plain colors: whoever changes the order of the sources sees at once what it does.
struct Sheet {
  const char* name;
  const char* date;
  int cloudCover;  // percent
  double column;   // steps from the west
  double row;      // steps from the north
  std::array<std::uint8_t, 3> color;
};

constexpr std::array<Sheet, 3> sheets = {{
    {"sheet_red", "2021-05-12", 5, 0, 1, {196, 60, 52}},
    {"sheet_green", "2019-08-30", 0, 1, 0, {70, 150, 74}},
    {"sheet_blue", "2020-07-03", 20, 2, 1, {58, 96, 186}},
}};

// A frame in a darker tone shows where a sheet ends.
std::uint8_t toneAt(const Sheet& sheet, std::size_t band, int x, int y) {
  constexpr int frame = 2;
  const bool isFrame = x < frame || y < frame || x >= side - frame || y >= side - frame;
  return static_cast<std::uint8_t>(isFrame ? sheet.color[band] / 2 : sheet.color[band]);
}

std::vector<std::uint8_t> bandOf(const Sheet& sheet, std::size_t band) {
  std::vector<std::uint8_t> values;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) values.push_back(toneAt(sheet, band, x, y));
  }
  return values;
}

void writeSheet(const std::filesystem::path& folder, const Sheet& sheet) {
  TiffFile file((folder / (std::string(sheet.name) + ".tif")).string(),
                {side, side, 3, GDT_Byte, {"PHOTOMETRIC=RGB"}});
  file.place(west + 8000 + sheet.column * step, north - 9000 - sheet.row * step, cellSide, utmCode);
  file.describe({{"TITLE", std::string("Overlap study, ") + sheet.name},
                 {"AREA_OR_POINT", "Area"},
                 {"REGION", "Arven Valley"},
                 {"SENSOR", "None (plain colors)"}});
  for (std::size_t band = 0; band < 3; ++band) file.write(static_cast<int>(band) + 1, bandOf(sheet, band));
  file.close();
}

std::string row(const Sheet& sheet, std::size_t id) {
  return "      <Source>\n        <File>" + std::string(nameText) + ".sources/" + sheet.name +
         ".tif</File>\n        <RasterId>" + std::to_string(id) +
         "</RasterId>\n        <Attributes><AcquisitionDate>" + sheet.date +
         "</AcquisitionDate><CloudCover>" + std::to_string(sheet.cloudCover) +
         "</CloudCover></Attributes>\n      </Source>\n";
}

std::string definition() {
  std::string text = "<Vorlane>\n  <MosaicDefinition>\n    <Name>" + std::string(nameText) +
                     "</Name>\n    <Title>Three overlapping sheets of plain color, 25 m</Title>\n"
                     "    <Region>Arven Valley</Region>\n    <PixelSource>None (plain colors)</PixelSource>\n"
                     "    <Sources>\n";
  for (std::size_t i = 0; i < sheets.size(); ++i) text += row(sheets[i], i + 1);
  return text + "    </Sources>\n  </MosaicDefinition>\n</Vorlane>\n";
}

}  // namespace

void writeOverlaps(const std::filesystem::path& folder) {
  const std::filesystem::path sources = folder / (std::string(nameText) + ".sources");
  std::filesystem::create_directory(sources);
  for (const Sheet& sheet : sheets) writeSheet(sources, sheet);
  std::ofstream file(folder / (std::string(nameText) + ".VLDef"), std::ios::binary);
  file << definition();
  if (!file.flush()) throw SampleFailure("the mosaic definition cannot be written");
}

}  // namespace vlclientui::samples
