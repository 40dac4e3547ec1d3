#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include <gdal_priv.h>

#include "Catalogue.h"
#include "TiffFile.h"

namespace {

namespace fs = std::filesystem;
using namespace vlclientui::samples;

constexpr int cells = 768;
constexpr double cellSize = 30;
constexpr const char* stamp = ".version";

fs::path madeFolder(const fs::path& folder) {
  fs::create_directories(folder);
  return folder;
}

bool isUpToDate(const fs::path& folder) {
  std::ifstream file(folder / stamp);
  std::string version;
  return std::getline(file, version) && version == samplesVersion;
}

void writeStamp(const fs::path& folder) {
  std::ofstream file(folder / stamp);
  file << samplesVersion << '\n';
  if (!file.flush()) throw SampleFailure("the version cannot be written");
}

void writeAll(const fs::path& folder) {
  const Terrain terrain = makeTerrain(cells, cellSize);
  writeElevation(madeFolder(folder / "Elevation"), terrain);
  writeRelief(madeFolder(folder / "Elevation"), terrain);
  writeScene(madeFolder(folder / "Imagery" / "Valley"), terrain);
  writeMosaic(madeFolder(folder / "Imagery" / "Valley"), terrain);
  writeOverlaps(madeFolder(folder / "Imagery"));
  writeLandCover(madeFolder(folder / "Landcover"), terrain);
  writeGeoid(madeFolder(folder / "World"));
  writeStamp(folder);
}

// The folder appears under its name only when it is whole.
void make(const fs::path& folder) {
  if (isUpToDate(folder)) return;
  const fs::path unfinished = folder.string() + ".unfinished";
  fs::remove_all(unfinished);
  writeAll(madeFolder(unfinished));
  fs::remove_all(folder);
  fs::rename(unfinished, folder);
}

fs::path withoutSlash(const fs::path& folder) {
  const fs::path whole = fs::absolute(folder).lexically_normal();
  return whole.has_filename() ? whole : whole.parent_path();
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::fputs("usage: vl_make_samples OUTPUT_FOLDER\n", stderr);
    return 2;
  }
  GDALAllRegister();
  try {
    make(withoutSlash(words[1]));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "vl_make_samples: %s\n", failure.what());
    return 1;
  }
}
