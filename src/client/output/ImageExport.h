#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "client/drawing/ImageSource.h"
#include "client/output/ExportJournal.h"
#include "client/output/GetImageRequest.h"
#include "client/raster/ExportProgress.h"

namespace vlclientui::client {

/// Writes an area of a service to a file, whole or not at all, in constant memory. Refuses what it can before
/// the first byte. Companions (world file, metadata, what the format itself cannot hold) are written beside
/// the file. docs/export.md lists all choices.
/// @param order of the service's sources, bottom first.
/// @param kept where it is told, pixels are kept beside the file (KeptPixels) until the export is whole, and
/// those that are kept already are not read again. What an earlier export kept goes once the file is whole.
/// @throws RuntimeFailure with a readable text, also after a cancel; the former file is then untouched.
void exportImage(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                 const GetImageRequest& request, const ExportProgress& progress,
                 const std::optional<ExportIdentity>& kept = {});

/// What an export will come to, as far as a small part of it tells.
struct ExportSample {
  std::uint64_t fileBytes = 0;   ///< of the whole image, estimated
  std::uint64_t leastBytes = 0;  ///< what the folder must have room for
  double parts = 1;              ///< how many times as large as the sample the image is
};

/// Writes a part from the middle of an export into memory.
/// @throws RuntimeFailure for what the export itself would refuse, and where the part cannot be read.
[[nodiscard]] ExportSample sampleExport(const ImageServiceRecord& service,
                                        const std::vector<std::size_t>& order,
                                        const GetImageRequest& request);

/// Bytes that are free where the file goes; nothing where the folder does not tell.
[[nodiscard]] std::optional<std::uint64_t> roomFor(const std::filesystem::path& target);

}  // namespace vlclientui::client
