#include "contracts/ReplacedFile.h"

#include <system_error>

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

constexpr int mostLinks = 40;

// A link that leads to nothing yet still says where the file is wanted.
fs::path behindLinks(const fs::path& path) {
  fs::path file = path;
  std::error_code error;
  for (int i = 0; i < mostLinks; ++i) {
    const fs::path next = fs::read_symlink(file, error);
    if (error) return file;
    file = file.parent_path() / next;
  }
  return path;
}

}  // namespace

ReplacedFile replacedFile(const fs::path& path) {
  ReplacedFile replaced{behindLinks(path), std::nullopt, false};
  std::error_code error;
  const fs::file_status status = fs::status(replaced.file, error);
  if (!error && fs::is_regular_file(status)) replaced.rights = status.permissions();
  replaced.isDevice = fs::is_other(status);
  return replaced;
}

}  // namespace vlclientui
