#include "client/network/MemoryImage.h"

#include <atomic>

#include <cpl_vsi.h>

#include "client/raster/Text.h"

namespace vlclientui::client {

MemoryImage::MemoryImage(std::string_view bytes) {
  static std::atomic<unsigned> count = 0;
  name_ = "/vsimem/vlclientui-answer-" + std::to_string(count++) + ".tif";
  // The library only reads here, though its function takes bytes that may change.
  auto* const data = reinterpret_cast<GByte*>(const_cast<char*>(bytes.data()));
  VSILFILE* file = VSIFileFromMemBuffer(name_.c_str(), data, bytes.size(), FALSE);
  if (file != nullptr) VSIFCloseL(file);
  const GdalScope scope;
  raster_ = openRaster(name_);
  if (!raster_) problem_ = utf8FromAny(scope.firstFailure("the image cannot be read"));
}

MemoryImage::~MemoryImage() {
  raster_.reset();
  VSIUnlink(name_.c_str());
}

}  // namespace vlclientui::client
