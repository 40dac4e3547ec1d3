#include "client/output/WorldFile.h"

#include <system_error>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr auto anyImage = ".wld";

std::string extensionOf(const fs::path& file) { return lowered(file.extension().string()); }

fs::path folderOf(const fs::path& file) {
  const fs::path folder = file.parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

}  // namespace

std::string worldFileText(const OutputGrid& grid) {
  const double width = grid.pixelWidth();
  const double height = grid.pixelHeight();
  return numberText(width) + "\n0\n0\n" + numberText(-height) + "\n" +
         numberText(grid.extent.xMin + width / 2) + "\n" + numberText(grid.extent.yMax - height / 2) + "\n";
}

fs::path worldFileOf(const fs::path& image) {
  const std::string extension = extensionOf(image);
  fs::path file = image;
  if (extension.size() < 3) return file.replace_extension(anyImage);
  return file.replace_extension(std::string{'.', extension[1], extension.back(), 'w'});
}

bool isWorldFileOf(const fs::path& image, const fs::path& file) {
  if (image.stem() != file.stem()) return false;
  const std::string extension = extensionOf(file);
  const bool fits = extension == anyImage || extension == extensionOf(image) + "w" ||
                    extension == extensionOf(worldFileOf(image));
  std::error_code error;
  return fits && fs::equivalent(folderOf(image), folderOf(file), error) && !error;
}

}  // namespace vlclientui::client
