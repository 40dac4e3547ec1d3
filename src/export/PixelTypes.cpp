#include "export/PixelTypes.h"

#include <algorithm>
#include <string>

#include "documents/TextCase.h"

namespace vlclientui {

namespace {

struct PixelType {
  std::string_view name;
  std::int16_t bits;
};

constexpr PixelType pixelTypes[] = {
    {"BYTE", 8},     {"UINT16", 16}, {"INT16", 16},  {"UINT32", 32},   {"INT32", 32},    {"FLOAT32", 32},
    {"FLOAT64", 64}, {"CINT16", 16}, {"CINT32", 32}, {"CFLOAT32", 32}, {"CFLOAT64", 64}, {"ELEVATION", 32},
};

}  // namespace

std::int16_t bytesPerSampleOf(std::string_view pixelType) {
  const std::string searched = upperCased(pixelType);
  const auto* const found = std::ranges::find(pixelTypes, searched, &PixelType::name);
  return found == std::end(pixelTypes) ? std::int16_t{0} : static_cast<std::int16_t>(found->bits / 8);
}

}  // namespace vlclientui
