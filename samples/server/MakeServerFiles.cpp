#include <cstdio>
#include <exception>
#include <filesystem>

#include "../TiffFile.h"
#include "Coverage.h"
#include "MapFile.h"
#include "QgisProject.h"
#include "StacCatalogue.h"

namespace {

namespace fs = std::filesystem;
using namespace vlclientui::samples;

void make(const fs::path& catalogue, const fs::path& folder) {
  const std::vector<Coverage> coverages = readCoverages(catalogue);
  fs::remove_all(folder);
  fs::create_directories(folder);
  writeMapFile(folder, catalogue, coverages);
  writeQgisProject(folder, catalogue, coverages);
  writeStacCatalogue(folder / "stac", catalogue);
}

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: vl_make_server_files CATALOGUE OUTPUT_FOLDER\n", stderr);
    return 2;
  }
  GDALAllRegister();
  try {
    make(fs::absolute(words[1]), fs::absolute(words[2]));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "vl_make_server_files: %s\n", failure.what());
    return 1;
  }
}
