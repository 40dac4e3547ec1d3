#include "GroundCover.h"

#include <algorithm>
#include <cmath>

#include "Noise.h"

namespace vlclientui::samples {
namespace {

constexpr double degree = 3.14159265358979323846 / 180;

constexpr std::array<Spectrum, coverCount> spectra = {{
    {0, 0, 0, 0, 0, 0},
    {0.040, 0.036, 0.020, 0.009, 0.005, 0.003},
    {0.125, 0.135, 0.150, 0.195, 0.215, 0.195},
    {0.045, 0.078, 0.058, 0.360, 0.200, 0.105},
    {0.040, 0.076, 0.050, 0.370, 0.200, 0.100},
    {0.022, 0.045, 0.025, 0.390, 0.165, 0.072},
    {0.017, 0.030, 0.019, 0.225, 0.095, 0.042},
    {0.050, 0.083, 0.072, 0.290, 0.220, 0.125},
    {0.105, 0.118, 0.130, 0.168, 0.205, 0.188},
    {0.140, 0.155, 0.170, 0.212, 0.255, 0.235},
    {0.700, 0.690, 0.670, 0.600, 0.090, 0.060},
}};
constexpr Spectrum stubble = {0.066, 0.100, 0.122, 0.235, 0.290, 0.225};
constexpr Spectrum ripeGrain = {0.056, 0.112, 0.112, 0.290, 0.250, 0.160};
constexpr Spectrum autumnLeaf = {0.035, 0.072, 0.105, 0.260, 0.200, 0.110};
constexpr Spectrum dryGrass = {0.060, 0.095, 0.105, 0.240, 0.250, 0.165};
constexpr Spectrum haze = {0.016, 0.008, 0.004, 0.001, 0, 0};

// Layers go over each other, each hiding its share of what lies below.
void lay(Cover& cover, CoverClass kind, double share) {
  for (double& other : cover.share) other *= 1 - share;
  cover.share[static_cast<std::size_t>(kind)] += share;
}

struct Site {
  double x = 0;  ///< kilometers from the corner of the whole ground, as y
  double y = 0;
  double height = 0;
  double slope = 0;
  double sunny = 0;  ///< -1 for a steep north face, 1 for a steep south face
  double moisture = 0;
  double broad = 0;  ///< noise of some kilometers
  double fine = 0;   ///< noise of some hundred meters
};

Site siteAt(const Terrain& terrain, int column, int row) {
  const Gradient gradient = gradientAt(terrain, column, row);
  Site site;
  site.x = (terrain.originX + (column + 0.5) * terrain.cellSize) / 1000;
  site.y = (terrain.originY + (row + 0.5) * terrain.cellSize) / 1000;
  site.height = terrain.height.at(column, row);
  site.slope = std::hypot(gradient.east, gradient.south);
  site.sunny = std::clamp(-gradient.south, -1.0, 1.0);
  site.moisture = terrain.moisture.at(column, row);
  site.broad = fractalNoise(site.x * 0.8, site.y * 0.8, 4, 301);
  site.fine = fractalNoise(site.x * 5, site.y * 5, 4, 302);
  return site;
}

void layLowland(Cover& cover, const Site& site, double field) {
  const double level = smoothStep(0.20, 0.10, site.slope) * smoothStep(1050, 800, site.height);
  const double farmed = level * (field < 0.78 ? 1.0 : 0.0);
  lay(cover, CoverClass::Cropland, farmed);
  const double town =
      smoothStep(0.26, 0.34, fractalNoise(site.x * 0.55 + 9, site.y * 0.55, 3, 401) + 0.12 * site.fine);
  lay(cover, CoverClass::BuiltUp, 0.9 * town * level);
}

void layForest(Cover& cover, const Site& site) {
  const double treeLine = 1720 + 130 * site.sunny + 260 * site.broad + 160 * site.fine + 120 * site.moisture;
  const double below = smoothStep(treeLine + 60, treeLine - 60, site.height);
  const double onSlopes = smoothStep(0.13, 0.24, site.slope + 0.09 * site.broad + 0.08 * site.fine);
  const double clearing = smoothStep(0.20, 0.30, site.broad + 0.5 * site.fine);
  const double alongStreams = smoothStep(0.72, 0.85, site.moisture) * smoothStep(0.02, 0.06, site.slope);
  const double forest = below * std::max(onSlopes * (1 - clearing), 0.7 * alongStreams);
  const double conifer =
      smoothStep(850, 1250, site.height - 180 * site.sunny + 350 * site.broad + 150 * site.fine);
  lay(cover, CoverClass::BroadleafForest, forest);
  lay(cover, CoverClass::ConiferForest, forest * conifer);
}

void layHighland(Cover& cover, const Site& site) {
  const double height = site.height + 260 * site.broad + 170 * site.fine;
  lay(cover, CoverClass::AlpineMeadow, smoothStep(1450, 1700, height) * cover.of(CoverClass::Grassland));
  lay(cover, CoverClass::Scree, 0.85 * smoothStep(2200, 2480, height + 300 * (site.slope - 0.6)));
  lay(cover, CoverClass::Rock,
      smoothStep(0.86, 1.02, site.slope + 0.25 * site.fine) * smoothStep(1500, 2100, site.height));
  lay(cover, CoverClass::Rock, smoothStep(2350, 2600, height) * smoothStep(0.45, 0.75, site.slope));
}

void laySnow(Cover& cover, const Site& site, double snowLine) {
  const double height = site.height + 130 * site.broad + 110 * site.fine - 260 * site.sunny;
  const double holds = smoothStep(1.30, 0.90, site.slope);
  lay(cover, CoverClass::Snow, holds * smoothStep(snowLine - 40, snowLine + 90, height));
}

// Strips of fields, each quarter of the land with its own direction.
double fieldAt(const Site& site) {
  const double quarter = patchNoise(site.x * 0.8, site.y * 0.8, 501);
  const double turn = quarter * 3.14159;
  const double along = std::cos(turn) * site.x + std::sin(turn) * site.y;
  const double across = std::cos(turn) * site.y - std::sin(turn) * site.x;
  const int row = static_cast<int>(std::floor(across / 0.13));
  const double shift = hashedUnit(row, 0, 502) * 0.4;
  const int column = static_cast<int>(std::floor((along + shift) / 0.34));
  return hashedUnit(column, row, 503 + static_cast<std::uint32_t>(quarter * 1000));
}

Cover coverOf(const Terrain& terrain, int x, int y, double snowLine) {
  const Site site = siteAt(terrain, x, y);
  Cover cover;
  cover.field = fieldAt(site);
  lay(cover, CoverClass::Grassland, 1);
  layLowland(cover, site, cover.field);
  layForest(cover, site);
  layHighland(cover, site);
  laySnow(cover, site, snowLine);
  lay(cover, CoverClass::Water, std::clamp(static_cast<double>(terrain.water.at(x, y)), 0.0, 1.0));
  return cover;
}

Spectrum mixed(const Spectrum& one, const Spectrum& other, double share) {
  Spectrum out{};
  for (std::size_t i = 0; i < out.size(); ++i) out[i] = one[i] + (other[i] - one[i]) * share;
  return out;
}

Spectrum fieldSpectrum(double field, double greenness) {
  const Spectrum& green = spectra[static_cast<std::size_t>(CoverClass::Cropland)];
  const double ripe = smoothStep(0.30, 0.34, field);
  const double cut = smoothStep(0.55, 0.59, field);
  return mixed(mixed(mixed(green, ripeGrain, ripe), stubble, cut), stubble, 0.45 * (1 - greenness));
}

Spectrum spectrumOf(CoverClass kind, double field, double greenness) {
  const Spectrum& summer = spectra[static_cast<std::size_t>(kind)];
  switch (kind) {
    case CoverClass::Cropland:
      return fieldSpectrum(field, greenness);
    case CoverClass::BroadleafForest:
      return mixed(autumnLeaf, summer, greenness);
    case CoverClass::Grassland:
    case CoverClass::AlpineMeadow:
      return mixed(dryGrass, summer, greenness);
    default:
      return summer;
  }
}

Spectrum mixtureOf(const Cover& cover, double greenness) {
  Spectrum sum{};
  for (std::size_t kind = 1; kind < coverCount; ++kind) {
    if (cover.share[kind] <= 0) continue;
    const Spectrum part = spectrumOf(static_cast<CoverClass>(kind), cover.field, greenness);
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += cover.share[kind] * part[i];
  }
  return sum;
}

// Roofs, crowns and stones differ from cell to cell.
double textureAt(const Terrain& terrain, int x, int y, const Cover& cover) {
  const auto column = static_cast<int>(terrain.originX / terrain.cellSize) + x;
  const auto row = static_cast<int>(terrain.originY / terrain.cellSize) + y;
  const double grain = hashedUnit(column, row, 601) - 0.5;
  const double rough = 0.45 * cover.of(CoverClass::BuiltUp) + 0.30 * cover.of(CoverClass::BroadleafForest) +
                       0.30 * cover.of(CoverClass::ConiferForest) + 0.16 * cover.of(CoverClass::Rock);
  return 1 + grain * (0.05 + rough);
}

}  // namespace

const std::array<CoverStyle, coverCount>& coverStyles() {
  static constexpr std::array<CoverStyle, coverCount> styles = {{
      {"No data", {0, 0, 0}},
      {"Water", {70, 130, 180}},
      {"Built-up area", {205, 92, 82}},
      {"Cropland", {240, 222, 150}},
      {"Grassland", {188, 214, 124}},
      {"Broadleaf forest", {104, 168, 88}},
      {"Conifer forest", {46, 112, 74}},
      {"Alpine meadow and shrub", {214, 206, 132}},
      {"Bare rock", {150, 142, 138}},
      {"Scree and moraine", {200, 192, 182}},
      {"Snow and ice", {244, 250, 255}},
  }};
  return styles;
}

CoverClass Cover::dominant() const {
  const auto* const most = std::max_element(share.begin(), share.end());
  return static_cast<CoverClass>(most - share.begin());
}

Cover coverAt(const Terrain& terrain, int x, int y) { return coverOf(terrain, x, y, Season().snowLine); }

Spectrum reflectanceAt(const Terrain& terrain, int x, int y, const Season& season) {
  const Cover cover = coverOf(terrain, x, y, season.snowLine);
  const double level = std::sin(season.sunElevation * degree);
  const double sun = sunlight(gradientAt(terrain, x, y), season.sunAzimuth, season.sunElevation) / level;
  const double light = (0.24 + 0.76 * sun) * textureAt(terrain, x, y, cover);
  Spectrum seen = mixtureOf(cover, season.greenness);
  for (std::size_t i = 0; i < seen.size(); ++i) seen[i] = seen[i] * light + haze[i];
  return seen;
}

}  // namespace vlclientui::samples
