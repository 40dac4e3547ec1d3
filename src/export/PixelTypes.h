#pragma once

#include <cstdint>
#include <string_view>

namespace vlclientui {

/// Bytes of one sample, by the name of its pixel type in any case; 0 for an unknown type. A complex type
/// counts as one of its parts, deliberately.
[[nodiscard]] std::int16_t bytesPerSampleOf(std::string_view pixelType);

}  // namespace vlclientui
