#include "client/RasterFixture.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include <cpl_string.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

fs::path newFolder() {
  static int count = 0;
  const fs::path folder = fs::temp_directory_path() /
                          ("vl_client_test_" + std::to_string(getpid()) + "_" + std::to_string(++count));
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

void georeference(GDALDataset& dataset, const RasterRecipe& recipe) {
  std::array<double, 6> transform = recipe.transform;
  dataset.SetGeoTransform(transform.data());
  if (recipe.epsg == 0) return;
  OGRSpatialReference system;
  system.importFromEPSG(recipe.epsg);
  dataset.SetSpatialRef(&system);
}

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) out.push_back(line);
  return out;
}

std::string oneElementALine(std::string document) {
  for (std::size_t at = 0; (at = document.find("><", at)) != std::string::npos; at += 2) {
    document.insert(at + 1, "\n");
  }
  return document + "\n";
}

// "<XMin>8.5</XMin>" -> the number; not a number for other lines.
double numberIn(const std::string& line) {
  const std::size_t from = line.find('>');
  const std::size_t to = line.rfind('<');
  if (from == std::string::npos || to <= from + 1) return NAN;
  const std::string text = line.substr(from + 1, to - from - 1);
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  return *end == '\0' ? number : NAN;
}

bool same(const std::string& expected, const std::string& actual) {
  if (expected == actual) return true;
  if (expected.substr(0, expected.find('>')) != actual.substr(0, actual.find('>'))) return false;
  return std::abs(numberIn(expected) - numberIn(actual)) <= 1e-9 * std::abs(numberIn(expected));
}

}  // namespace

RasterFixture::RasterFixture() : folder_(newFolder()), xml_(platform::PathTranslation(folder_.string())) {
  GDALAllRegister();
}

RasterFixture::~RasterFixture() { fs::remove_all(folder_); }

fs::path RasterFixture::makeRaster(const std::string& name, const RasterRecipe& recipe) const {
  const fs::path file = folder_ / name;
  fs::create_directories(file.parent_path());
  auto* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  CPLStringList options;
  if (!recipe.option.empty()) options.AddString(recipe.option.c_str());
  auto* dataset =
      driver->Create(file.c_str(), recipe.width, recipe.height, recipe.bands, recipe.type, options.List());
  georeference(*dataset, recipe);
  if (recipe.finish) recipe.finish(*dataset);
  GDALClose(GDALDataset::ToHandle(dataset));
  return file;
}

fs::path RasterFixture::writeText(const std::string& name, const std::string& text) const {
  const fs::path file = folder_ / name;
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
  return file;
}

std::string elementContent(const std::string& document, const std::string& name) {
  const std::size_t open = document.find("<" + name + ">");
  if (open == std::string::npos) return "(none)";
  const std::size_t from = open + name.size() + 2;
  return document.substr(from, document.find("</" + name + ">", from) - from);
}

void expectGolden(const std::string& actual, const std::string& name) {
  std::ifstream file(fs::path(testDataFolder()) / "client" / name, std::ios::binary);
  ASSERT_TRUE(file) << "no expected document " << name;
  const std::string wanted(std::istreambuf_iterator<char>(file), {});
  const std::string found = oneElementALine(actual);
  const auto expected = lines(wanted);
  const auto got = lines(found);
  bool equal = expected.size() == got.size();
  for (std::size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
    const std::string want = i < expected.size() ? expected[i] : "(end)";
    const std::string have = i < got.size() ? got[i] : "(end)";
    if (same(want, have)) continue;
    equal = false;
    ADD_FAILURE() << name << ":" << i + 1 << "\n- " << want << "\n+ " << have;
    break;
  }
  if (!equal) std::ofstream(name + ".fail", std::ios::binary) << found;
  EXPECT_TRUE(equal);
}

}  // namespace vlclientui::test
