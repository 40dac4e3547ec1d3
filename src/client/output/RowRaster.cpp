#include "client/output/RowRaster.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include <cpl_error.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

class RowBand : public GDALRasterBand {
 public:
  RowBand(RowRaster& raster, GDALRasterBand& like, int number) : raster_(raster), like_(like) {
    poDS = &raster;
    nBand = number;
    eDataType = like.GetRasterDataType();
    nBlockXSize = like.GetXSize();
    nBlockYSize = 1;
  }

  double GetNoDataValue(int* isSet) override { return like_.GetNoDataValue(isSet); }
  GDALColorInterp GetColorInterpretation() override { return like_.GetColorInterpretation(); }
  GDALColorTable* GetColorTable() override { return like_.GetColorTable(); }
  const char* GetUnitType() override { return like_.GetUnitType(); }

 protected:
  CPLErr IReadBlock(int /*column*/, int row, void* values) override {
    return raster_.copyRow(row, nBand, values) ? CE_None : CE_Failure;
  }

 private:
  RowRaster& raster_;
  GDALRasterBand& like_;
};

class AlphaRowBand : public GDALRasterBand {
 public:
  AlphaRowBand(RowRaster& raster, GDALRasterBand& like, int number) : raster_(raster) {
    poDS = &raster;
    nBand = number;
    eDataType = like.GetRasterDataType();
    nBlockXSize = like.GetXSize();
    nBlockYSize = 1;
  }

  GDALColorInterp GetColorInterpretation() override { return GCI_AlphaBand; }

 protected:
  CPLErr IReadBlock(int /*column*/, int row, void* values) override {
    return raster_.copyMaskRow(row, values) ? CE_None : CE_Failure;
  }

 private:
  RowRaster& raster_;
};

}  // namespace

RowRaster::RowRaster(GDALDataset& like, WindowReader& reader, ExportProgress waiting, RowAlpha alpha)
    : like_(like), reader_(reader), waiting_(std::move(waiting)) {
  nRasterXSize = like.GetRasterXSize();
  nRasterYSize = like.GetRasterYSize();
  for (int band = 1; band <= like.GetRasterCount(); ++band) {
    SetBand(band, new RowBand(*this, *like.GetRasterBand(band), band));
    GetRasterBand(band)->SetDescription(like.GetRasterBand(band)->GetDescription());
  }
  if (alpha == RowAlpha::FromMask) {
    SetBand(nBands + 1, new AlphaRowBand(*this, *like.GetRasterBand(1), nBands + 1));
  }
  SetMetadata(like.GetMetadata());
}

RowRaster::~RowRaster() = default;

CPLErr RowRaster::GetGeoTransform(double* transform) { return like_.GetGeoTransform(transform); }

const OGRSpatialReference* RowRaster::GetSpatialRef() const { return like_.GetSpatialRef(); }

bool RowRaster::copyRow(int row, int band, void* values) {
  if (!reach(row)) return false;
  const std::size_t rowBytes = sampleBytes() * static_cast<std::size_t>(nRasterXSize);
  const std::size_t bandBytes = rowBytes * static_cast<std::size_t>(current_.window.height);
  const std::size_t at = static_cast<std::size_t>(band - 1) * bandBytes +
                         static_cast<std::size_t>(row - current_.window.y) * rowBytes;
  std::memcpy(values, current_.values.data() + at, rowBytes);
  return true;
}

bool RowRaster::copyMaskRow(int row, void* values) {
  if (!reach(row)) return false;
  const auto columns = static_cast<std::size_t>(nRasterXSize);
  const std::uint8_t* mask =
      current_.mask.data() + static_cast<std::size_t>(row - current_.window.y) * columns;
  auto* sample = static_cast<std::uint8_t*>(values);
  for (std::size_t i = 0; i < columns; ++i, sample += sampleBytes())
    std::memset(sample, mask[i], sampleBytes());
  return true;
}

std::size_t RowRaster::sampleBytes() {
  return static_cast<std::size_t>(GDALGetDataTypeSizeBytes(GetRasterBand(1)->GetRasterDataType()));
}

// Brings the window of a row into memory.
bool RowRaster::reach(int row) {
  try {
    while (row >= current_.window.y + current_.window.height) takeNext();
  } catch (const RuntimeFailure& reason) {
    failure_ = reason.description();
  }
  if (failure_.empty() && row < current_.window.y) failure_ = "The format's writer asks for a row twice";
  if (failure_.empty()) return true;
  CPLError(CE_Failure, CPLE_FileIO, "%s", failure_.c_str());
  return false;
}

void RowRaster::takeNext() {
  const Window next = reader_.next();
  current_ = reader_.take(
      [&](double share) { return !waiting_ || waiting_((next.y + share * next.height) / nRasterYSize); });
}

}  // namespace vlclientui::client
