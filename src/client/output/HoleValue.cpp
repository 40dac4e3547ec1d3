#include "client/output/HoleValue.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "client/raster/RasterHoles.h"

namespace vlclientui::client {
namespace {

template <class Sample>
bool dataHolds(const WindowPixels& pixels, double wanted) {
  const std::size_t count = pixels.mask.size();
  const std::size_t samples = pixels.values.size() / sizeof(Sample);
  const auto* values = reinterpret_cast<const Sample*>(pixels.values.data());
  for (std::size_t i = 0; i < samples; ++i) {
    if (isSameValue(static_cast<double>(values[i]), wanted) && pixels.mask[i % count] != 0) return true;
  }
  return false;
}

bool dataHolds(const WindowPixels& pixels, double value, GDALDataType type) {
  switch (type) {
    case GDT_Byte:
      return dataHolds<std::uint8_t>(pixels, value);
    case GDT_UInt16:
      return dataHolds<std::uint16_t>(pixels, value);
    case GDT_Int16:
      return dataHolds<std::int16_t>(pixels, value);
    case GDT_UInt32:
      return dataHolds<std::uint32_t>(pixels, value);
    case GDT_Int32:
      return dataHolds<std::int32_t>(pixels, value);
    case GDT_Float32:
      return dataHolds<float>(pixels, value);
    case GDT_Float64:
      return dataHolds<double>(pixels, value);
    default:
      // A type that cannot be compared counts as having the value.
      return true;
  }
}

}  // namespace

void HoleValue::compare(const WindowPixels& pixels, GDALDataType type) {
  if (value_ && dataHolds(pixels, *value_, type)) value_.reset();
}

}  // namespace vlclientui::client
