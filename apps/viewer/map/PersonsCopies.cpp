#include "viewer/map/PersonsCopies.h"

#include <QStandardPaths>
#include <filesystem>

namespace vlclientui::viewer {
namespace {

constexpr std::uintmax_t mostBytes = std::uintmax_t{1} << 30U;

}  // namespace

std::shared_ptr<client::SmallCopies> personsCopies() {
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
  const auto folder = std::filesystem::path(cache.toStdString()) / "vlclientui" / "small-copies";
  return std::make_shared<client::SmallCopies>(folder, mostBytes);
}

}  // namespace vlclientui::viewer
