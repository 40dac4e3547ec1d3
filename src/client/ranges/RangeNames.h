#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vlclientui::client {

/// What all names of files of the web begin with.
inline constexpr std::string_view rangePrefix = "/vsivlrange/";

/// An address as a name: scheme, host and path as steps, so that a name can be seen from another one, and a
/// file is called as its server calls it. Blanks and letters stand plainly; what would mean something else to
/// the raster library is encoded.
[[nodiscard]] std::string nameOfAddress(const std::string& address);

/// The address that a name was made of, spelled as servers want it; nothing for other names.
[[nodiscard]] std::optional<std::string> addressOfName(std::string_view name);

}  // namespace vlclientui::client
