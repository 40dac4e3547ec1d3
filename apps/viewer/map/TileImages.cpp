#include "viewer/map/TileImages.h"

namespace vlclientui::viewer {
namespace {

constexpr std::size_t mostImages = 400;  // of 256 KB: more than two large screens have

// Those without holes are copied row by row, others blended; colors that are not premultiplied yet would be
// brought into that form for each painting.
QImage imageOf(const client::ServicePicture& picture) {
  const QImage whole(picture.rgba.data(), picture.columns, picture.rows, picture.columns * 4,
                     QImage::Format_RGBA8888);
  bool isOpaque = true;
  for (std::size_t i = 3; i < picture.rgba.size() && isOpaque; i += 4) isOpaque = picture.rgba[i] == 255;
  return whole.convertToFormat(isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

void TileImages::begin() {
  std::erase_if(entries_, [](const auto& entry) { return !entry.second.isUsed; });
  for (auto& [picture, entry] : entries_) entry.isUsed = false;
}

QImage TileImages::of(const client::PicturePtr& picture) {
  if (const auto known = entries_.find(picture); known != entries_.end()) {
    known->second.isUsed = true;
    return known->second.image;
  }
  QImage image = imageOf(*picture);
  if (entries_.size() < mostImages) entries_.emplace(picture, Entry{image});
  return image;
}

}  // namespace vlclientui::viewer
