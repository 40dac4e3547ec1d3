#include "viewer/map/MapCopies.h"

#include <cmath>
#include <utility>

#include "viewer/map/PersonsCopies.h"

namespace vlclientui::viewer {
MapCopies::MapCopies(QObject* parent)
    : QObject(parent), copies_(personsCopies()), maker_(copies_, [this] { tell(); }) {}

MapCopies::~MapCopies() = default;

void MapCopies::giveUp() {
  maker_.giveUp();
  emit changed();
}

void MapCopies::tell() {
  told_.tell(*this, [this] {
    emit changed();
    if (std::exchange(seen_, copies_->version()) != copies_->version()) emit made();
  });
}

QString MapCopies::progress() const {
  const auto present = maker_.progress();
  if (!present) return {};
  const QString name = QString::fromStdString(present->raster.filename().string());
  const QString text = tr("Small copy of %1: %2 %").arg(name).arg(std::lround(present->share * 100));
  return present->waiting == 0 ? text : tr("%1, %2 more to come").arg(text).arg(present->waiting);
}

}  // namespace vlclientui::viewer
