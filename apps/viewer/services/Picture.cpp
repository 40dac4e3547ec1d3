#include "viewer/services/Picture.h"

namespace vlclientui::viewer {

QImage toImage(const client::ServicePicture& picture) {
  if (picture.rgba.empty()) return {};
  const QImage borrowed(picture.rgba.data(), picture.columns, picture.rows, picture.columns * 4,
                        QImage::Format_RGBA8888);
  return borrowed.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace vlclientui::viewer
