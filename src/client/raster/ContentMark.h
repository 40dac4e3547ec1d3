#pragma once

#include <filesystem>
#include <string>

namespace vlclientui::client {

/// The metadata item by which a raster that is no file tells what its content mark is made of, and the domain
/// of that item.
constexpr auto contentMarkItem = "CONTENT_MARK";
constexpr auto contentMarkDomain = "VLCLIENTUI";

/// What tells the content of a raster from that of another day: of a file its size and time, of a file of the
/// web besides what its server tells of it and of all files that it is made of, of a raster of a server what
/// it says itself.
/// @throws RuntimeFailure where there is no such raster.
[[nodiscard]] std::string contentMark(const std::filesystem::path& raster);

}  // namespace vlclientui::client
