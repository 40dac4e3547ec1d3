#pragma once

#include <filesystem>
#include <string>

namespace vlclientui::client {

/// The metadata item by which a raster that is no file tells what its content mark is made of, and the domain
/// of that item.
constexpr auto contentMarkItem = "CONTENT_MARK";
constexpr auto contentMarkDomain = "VLCLIENTUI";

/// What tells the content of a raster from that of another day: of a file its size and time, and those of the
/// files that it is made of (overviews, masks, sources of a virtual raster); of a file of the web what its
/// server tells of each; of a raster of a server what it says itself.
/// @throws RuntimeFailure where there is no such raster.
[[nodiscard]] std::string contentMark(const std::filesystem::path& raster);

}  // namespace vlclientui::client
