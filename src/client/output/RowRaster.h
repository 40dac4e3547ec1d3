#pragma once

#include <array>
#include <string>

#include <gdal_priv.h>

#include "client/raster/WindowReader.h"

namespace vlclientui::client {

/// Whether a mask of the rows becomes one more band, of transparency.
enum class RowAlpha { None, FromMask };

/// A raster whose rows are taken from a reader as a writer asks for them. Rows come once, from the top; a
/// writer that goes back fails.
class RowRaster : public GDALDataset {
 public:
  /// @param like size, bands, colors, place and texts; only these are read of it.
  /// @param reader of windows of full width, with their mask where it becomes a band; both must outlive this
  /// object.
  /// @param waiting told how much of all rows is read, as long as the next one is waited for.
  RowRaster(GDALDataset& like, WindowReader& reader, ExportProgress waiting, RowAlpha alpha = RowAlpha::None);
  ~RowRaster() override;

  CPLErr GetGeoTransform(double* transform) override;
  const OGRSpatialReference* GetSpatialRef() const override;

  /// One row of one band. @returns false when it cannot be had; failure() tells why.
  bool copyRow(int row, int band, void* values);
  /// The same of the mask, as transparency: all bits of a sample, or none.
  bool copyMaskRow(int row, void* values);
  [[nodiscard]] const std::string& failure() const { return failure_; }

 private:
  [[nodiscard]] bool reach(int row);
  void takeNext();
  [[nodiscard]] std::size_t sampleBytes();

  GDALDataset& like_;
  WindowReader& reader_;
  ExportProgress waiting_;
  WindowPixels current_;
  std::string failure_;
};

}  // namespace vlclientui::client
