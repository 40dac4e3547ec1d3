#pragma once

#include <filesystem>

#include "Terrain.h"

namespace vlclientui::samples {

/// Changes whenever the samples do.
constexpr const char* samplesVersion = "2";

/// Each writes one service below the folder, which exists. Every failure is a SampleFailure.
void writeElevation(const std::filesystem::path& folder, const Terrain& terrain);
void writeRelief(const std::filesystem::path& folder, const Terrain& terrain);
void writeScene(const std::filesystem::path& folder, const Terrain& terrain);
void writeLandCover(const std::filesystem::path& folder, const Terrain& terrain);
void writeMosaic(const std::filesystem::path& folder, const Terrain& terrain);
void writeOverlaps(const std::filesystem::path& folder);
/// From the geoid grid in the data folders of the projection library.
void writeGeoid(const std::filesystem::path& folder);

/// UTM zone 32N; outer north-west corner of the ground in meters.
constexpr int utmCode = 32632;
constexpr double west = 452000;
constexpr double north = 5166000;

}  // namespace vlclientui::samples
