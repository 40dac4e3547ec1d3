#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "GroundCover.h"
#include "Noise.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

constexpr int columnTotal = 4;
constexpr int rowTotal = 3;
constexpr int finer = 3;
constexpr int side = 300;        // cells of a source, across and down
constexpr int stepAcross = 222;  // cells from one source to the next
constexpr int stepDown = 214;
constexpr int left = 250;  // of the flown area, in cells of the terrain
constexpr int top = 270;
constexpr const char* nameText = "Ortho_Mosaic";

// What the air adds in red, green and blue; from an aircraft less of it than from above the air.
constexpr std::array<double, 3> veil = {0.004, 0.008, 0.016};

// One flight: when, in which light, with which film.
struct Flight {
  const char* date;
  const char* camera;
  Season season;
  double exposure;
  std::array<double, 3> tint;
  double cloudCover;  // percent
};

constexpr std::array<Flight, 4> flights = {{
    {"2019-06-21", "Survey camera A", {1.00, 2500, 140, 58}, 1.06, {0.98, 1.00, 1.02}, 0},
    {"2020-08-09", "Survey camera A", {0.80, 2620, 170, 52}, 1.00, {1.03, 1.00, 0.95}, 3},
    {"2020-10-04", "Survey camera B", {0.35, 2350, 176, 36}, 0.95, {1.01, 1.00, 0.97}, 0},
    {"2021-07-14", "Survey camera B", {0.95, 2550, 128, 50}, 1.12, {0.96, 1.00, 1.07}, 8},
}};
// Neighbors mostly come from different flights, as areas are completed over the years.
constexpr std::array<int, columnTotal* rowTotal> flightOf = {0, 0, 1, 3, 0, 3, 1, 2, 1, 2, 0, 3};

struct Source {
  int column = 0;
  int row = 0;
  [[nodiscard]] int number() const { return row * columnTotal + column + 1; }
  [[nodiscard]] const Flight& flight() const {
    return flights[static_cast<std::size_t>(flightOf[static_cast<std::size_t>(number() - 1)])];
  }
  [[nodiscard]] std::string fileName() const {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "ortho_%02d.tif", number());
    return name.data();
  }
};

using Band = std::vector<std::uint8_t>;
using Picture = std::array<Band, 3>;

std::uint8_t exposed(double reflectance, double gain) {
  const double tone = std::pow(std::max(0.0, reflectance * gain / 0.23), 0.66);
  // 0 means no data, so black begins at 1.
  return static_cast<std::uint8_t>(std::clamp(std::round(255 * tone), 1.0, 255.0));
}

// An aircraft flies not quite along the map's grid: the frame is turned a little in its rectangle.
bool isInFrame(const Source& source, int x, int y) {
  const double turn = (hashedUnit(source.column, source.row, 801) - 0.5) * 0.10;
  const double half = side / 2.0;
  const double dx = x + 0.5 - half;
  const double dy = y + 0.5 - half;
  const double reach = half * 0.955;
  return std::abs(dx + turn * dy) < reach && std::abs(dy - turn * dx) < reach;
}

double cloudAt(const Flight& flight, double x, double y) {
  if (flight.cloudCover <= 0) return 0;
  const double edge = 0.36 - 0.012 * flight.cloudCover;
  return 0.92 * smoothStep(edge, edge + 0.22, fractalNoise(x / 95.0, y / 95.0, 5, 811));
}

void expose(Picture& picture, const Terrain& area, const Source& source, int x, int y) {
  const Flight& flight = source.flight();
  const int column = source.column * stepAcross + x;
  const int row = source.row * stepDown + y;
  const Spectrum seen = reflectanceAt(area, column, row, flight.season);
  const double cloud = cloudAt(flight, column, row);
  const double shadow = 1 - 0.55 * cloudAt(flight, column + 14, row - 22) * (1 - cloud);
  // Lenses darken towards the corners; the seams of real mosaics show it.
  const double fall = 1 - 0.16 * (std::pow(2.0 * x / side - 1, 2) + std::pow(2.0 * y / side - 1, 2)) / 2;
  for (std::size_t i = 0; i < picture.size(); ++i) {
    const double ground = seen[2 - i] * shadow;
    const double all = ground - 0.6 * veil[i] + (0.45 - ground) * cloud;
    picture[i][static_cast<std::size_t>(y) * side + static_cast<std::size_t>(x)] =
        exposed(all, flight.exposure * flight.tint[i] * fall);
  }
}

Picture photographed(const Terrain& area, const Source& source) {
  Picture picture;
  picture.fill(Band(static_cast<std::size_t>(side) * side));
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      if (isInFrame(source, x, y)) expose(picture, area, source, x, y);
    }
  }
  return picture;
}

std::string tiffTime(const std::string& date) {
  std::string time = date + " 10:30:00";
  time[4] = time[7] = ':';
  return time;
}

void writeSource(const std::filesystem::path& folder, const Terrain& area, const Source& source) {
  TiffFile file((folder / source.fileName()).string(),
                {side, side, 3, GDT_Byte, {"PREDICTOR=2", "PHOTOMETRIC=RGB"}});
  file.place(west + area.originX + source.column * stepAcross * area.cellSize,
             north - area.originY - source.row * stepDown * area.cellSize, area.cellSize, utmCode);
  file.describe({{"TITLE", "Orthophoto " + std::to_string(source.number())},
                 {"TIFFTAG_IMAGEDESCRIPTION", "Arven Valley orthophoto, 10 m"},
                 {"TIFFTAG_DATETIME", tiffTime(source.flight().date)},
                 {"AREA_OR_POINT", "Area"},
                 {"REGION", "Arven Valley"},
                 {"SENSOR", source.flight().camera}});
  const Picture picture = photographed(area, source);
  for (int band = 1; band <= 3; ++band) {
    file.band(band).SetNoDataValue(0);
    file.write(band, picture[static_cast<std::size_t>(band - 1)]);
  }
  file.close();
}

std::string element(const char* name, const std::string& text) {
  return std::string("<") + name + ">" + text + "</" + name + ">";
}

std::string definitionRow(const Source& source) {
  const Flight& flight = source.flight();
  return "      <Source>\n        " +
         element("File", std::string(nameText) + ".sources/" + source.fileName()) + "\n        " +
         element("RasterId", std::to_string(source.number())) + "\n        <Attributes>" +
         element("AcquisitionDate", flight.date) +
         element("CloudCover", std::to_string(static_cast<int>(flight.cloudCover))) +
         element("Camera", flight.camera) +
         element("SunElevation", std::to_string(static_cast<int>(flight.season.sunElevation))) +
         "</Attributes>\n      </Source>\n";
}

std::string definition(const std::vector<Source>& sources) {
  std::string text = "<Vorlane>\n  <MosaicDefinition>\n";
  text += "    " + element("Name", nameText) + "\n";
  text += "    " + element("Title", "Orthophoto mosaic 2019-2021, 10 m") + "\n";
  text += "    " + element("Region", "Arven Valley") + "\n";
  text += "    " + element("PixelSource", "Survey cameras A and B (simulated)") + "\n";
  text += "    " + element("SourceFolder", std::string(nameText) + ".sources") + "\n    <Sources>\n";
  for (const Source& source : sources) text += definitionRow(source);
  return text + "    </Sources>\n  </MosaicDefinition>\n</Vorlane>\n";
}

std::vector<Source> allSources() {
  std::vector<Source> sources;
  for (int row = 0; row < rowTotal; ++row) {
    for (int column = 0; column < columnTotal; ++column) sources.push_back({column, row});
  }
  return sources;
}

}  // namespace

void writeMosaic(const std::filesystem::path& folder, const Terrain& terrain) {
  const int across = ((columnTotal - 1) * stepAcross + side) / finer;
  const int down = ((rowTotal - 1) * stepDown + side) / finer + 1;
  const Terrain area = detailOf(terrain, left, top, across, down, finer);
  const std::filesystem::path sourceFolder = folder / (std::string(nameText) + ".sources");
  std::filesystem::create_directory(sourceFolder);
  const std::vector<Source> sources = allSources();
  for (const Source& source : sources) writeSource(sourceFolder, area, source);
  std::ofstream file(folder / (std::string(nameText) + ".VLDef"), std::ios::binary);
  file << definition(sources);
  if (!file.flush()) throw SampleFailure("the mosaic definition cannot be written");
}

}  // namespace vlclientui::samples
