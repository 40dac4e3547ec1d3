#include "export/Formats.h"

#include <algorithm>
#include <iterator>

namespace vlclientui {

namespace {

constexpr const char* tifFilter = "Tif (*.Tif) | *.Tif";

// Kept as it is: TIFF-LZ77 takes a quality that its estimate does not look at.
// clang-format off
constexpr ExportFormat formats[] = {
    {"TIFF-No Compression", "None", true,  "0",   false, "Tiff - No Compression", "Tif",  tifFilter,                   "Tiff",     "",     true},
    {"TIFF-JPEG",           "256",  true,  "75",  true,  "Tiff - JPEG",           "Tif",  tifFilter,                   "Tiff",     "JPEG", true},
    {"TIFF-LZ77",           "512",  true,  "75",  true,  "Tiff - LZ77",           "Tif",  tifFilter,                   "Tiff",     "LZ77", true},
    {"JPEG",                "None", false, "80",  true,  "JPEG",                  "JPEG", "JPEG (*.JPEG) | *.JPEG",    "JPEG",     "",     false},
    {"JP2",                 "None", false, "100", true,  "JP2",                   "JP2",  "JP2 (*.JP2) | *.JP2",       "JPEG2000", "",     false},
    {"PNG",                 "None", false, "0",   false, "PNG",                   "PNG",  "PNG (*.PNG) | *.PNG",       "PNG",      "",     false},
};
constexpr ExportFormat none =
    {"",                    "None", false, "100", true,  "",                      "",     "",                          "",         "",     false};
// clang-format on

}  // namespace

const ExportFormat* findFormat(std::string_view entry) {
  const auto* const found = std::ranges::find(formats, entry, &ExportFormat::entry);
  return found == std::end(formats) ? nullptr : found;
}

const ExportFormat& noFormat() { return none; }

}  // namespace vlclientui
