#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace vlclientui::client {

/// What a .VLDef file is written in, of this machine and of the web. Format: docs/catalogue.md.
namespace definition_words {

inline constexpr auto document = "Vorlane";
inline constexpr auto definition = "MosaicDefinition";
inline constexpr auto name = "Name";
inline constexpr auto title = "Title";
inline constexpr auto region = "Region";
inline constexpr auto pixelSource = "PixelSource";
inline constexpr auto sourceFolder = "SourceFolder";
inline constexpr auto sources = "Sources";
inline constexpr auto source = "Source";
inline constexpr auto file = "File";
inline constexpr auto rasterId = "RasterId";
inline constexpr auto attributes = "Attributes";
/// Behind the name of the file: the home of its sources where it tells of none.
inline constexpr auto sourcesEnding = ".sources";
/// Larger ones are not read.
inline constexpr std::size_t mostBytes = std::size_t{16} << 20U;

}  // namespace definition_words

/// Windows find a raster by its id, so ids must be unique.
/// @param told empty for none. @param number the source's own, from 1 on.
[[nodiscard]] std::string freeRasterId(std::set<std::string>& taken, const std::string& told,
                                       std::size_t number);

}  // namespace vlclientui::client
