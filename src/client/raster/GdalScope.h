#pragma once

#include <memory>
#include <string>

#include <gdal_priv.h>

#include "client/reach/GuardedDrivers.h"

namespace vlclientui::client {

/// Silences GDAL on this thread for its lifetime and records its complaints. Files lead nowhere meanwhile but
/// where a person pointed.
class GdalScope {
 public:
  GdalScope();
  ~GdalScope();
  GdalScope(const GdalScope&) = delete;
  GdalScope& operator=(const GdalScope&) = delete;

  /// The first failure since construction, or the given text when there was none.
  [[nodiscard]] std::string firstFailure(const std::string& otherwise) const;
  /// The first failure, and the last one after it if that differs: the first says what, the last often which
  /// file.
  [[nodiscard]] std::string failures(const std::string& otherwise) const;
  /// A readable text for pixels that cannot be read although the header could.
  [[nodiscard]] std::string readFailure() const;

 private:
  struct Failures {
    std::string first;
    std::string last;
  };
  static void CPL_STDCALL keep(CPLErr severity, CPLErrorNum number, const char* message);

  ReachScope reach_;
  Failures kept_;
};

struct DatasetCloser {
  void operator()(GDALDataset* dataset) const { GDALClose(GDALDataset::ToHandle(dataset)); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, DatasetCloser>;

/// Read-only, rasters only. Null on failure; a GdalScope on the stack then has the reason.
/// @param file a file or name that a person chose, or that this library made; never one that stands in a
/// file, unless it is that of a part ("NETCDF:...", "/vsizip/...").
[[nodiscard]] DatasetPtr openRaster(const std::string& file);

}  // namespace vlclientui::client
