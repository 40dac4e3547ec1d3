#pragma once

#include <QImage>
#include <map>

#include "client/mapping/PictureStore.h"

namespace vlclientui::viewer {

/// Pictures of tiles in the form that is painted fastest, as long as they are painted again and again.
class TileImages {
 public:
  /// Pictures that are asked for no more until the next call of this are let go.
  void begin();
  [[nodiscard]] QImage of(const client::PicturePtr& picture);

 private:
  struct Entry {
    QImage image;
    bool isUsed = true;
  };

  std::map<client::PicturePtr, Entry> entries_;
};

}  // namespace vlclientui::viewer
