#include "viewer/services/Picture.h"

namespace vlclientui::viewer {

QImage toImage(const client::Thumbnail& picture) {
  if (picture.isEmpty()) return {};
  const QImage borrowed(picture.rgba.data(), picture.width, picture.height, picture.width * 4,
                        QImage::Format_RGBA8888);
  return borrowed.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace vlclientui::viewer
