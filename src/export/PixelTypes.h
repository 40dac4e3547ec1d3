#pragma once

#include <cstdint>
#include <string_view>

namespace vlclientui {

/// Bytes of one sample, by the pixel type of an image in any case; 0 for a text that is none. Complex types
/// count as one of their parts, on purpose.
[[nodiscard]] std::int16_t bytesPerSampleOf(std::string_view pixelType);

}  // namespace vlclientui
