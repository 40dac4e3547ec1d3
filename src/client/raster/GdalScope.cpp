#include "client/raster/GdalScope.h"

#include <mutex>
#include <optional>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include "client/raster/ErrorPrinting.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

using OpenFunction = GDALDataset* (*)(GDALOpenInfo*);

// Set once, before anybody calls by way of it.
OpenFunction openMemory = nullptr;

// Names of this driver hold addresses of memory, and files may tell the raster library what to open. Nobody
// here opens rasters of memory by name, but the program that this is a part of may.
GDALDataset* openMemoryForOthers(GDALOpenInfo* info) {
  return ReachScope::isActive() ? nullptr : openMemory(info);
}

void registerDriversOnce() {
  static std::once_flag once;
  std::call_once(once, [] {
    GDALAllRegister();
    GDALDriver* const memory = GetGDALDriverManager()->GetDriverByName("MEM");
    if (memory != nullptr && memory->pfnOpen != nullptr) {
      openMemory = memory->pfnOpen;
      memory->pfnOpen = openMemoryForOthers;
    }
    guardDrivers();
  });
}

// Otherwise GDAL lists the whole folder for each file that it opens, which among thousands of files takes far
// longer than the file itself. Without a list it asks for side-car files by name.
class NoFolderListing {
 public:
  NoFolderListing() {
    if (const char* const value = CPLGetThreadLocalConfigOption(option, nullptr)) former_ = value;
    CPLSetThreadLocalConfigOption(option, "TRUE");
  }
  ~NoFolderListing() { CPLSetThreadLocalConfigOption(option, former_ ? former_->c_str() : nullptr); }
  NoFolderListing(const NoFolderListing&) = delete;
  NoFolderListing& operator=(const NoFolderListing&) = delete;

 private:
  static constexpr const char* option = "GDAL_DISABLE_READDIR_ON_OPEN";
  std::optional<std::string> former_;  ///< of the program that this is a part of
};

}  // namespace

GdalScope::GdalScope() {
  registerDriversOnce();
  stopPrintingErrors();
  CPLPushErrorHandlerEx(keep, &kept_);
}

GdalScope::~GdalScope() {
  CPLPopErrorHandler();
  CPLErrorReset();
}

std::string GdalScope::firstFailure(const std::string& otherwise) const {
  return kept_.first.empty() ? otherwise : kept_.first;
}

std::string GdalScope::failures(const std::string& otherwise) const {
  if (kept_.last == kept_.first) return firstFailure(otherwise);
  const bool saysBoth = kept_.last.find(kept_.first) != std::string::npos;
  return saysBoth ? kept_.last : kept_.first + "; " + kept_.last;
}

std::string GdalScope::readFailure() const {
  return "The source cannot be read; its file is damaged, cut off or gone. " + utf8FromAny(failures(""));
}

void CPL_STDCALL GdalScope::keep(CPLErr severity, CPLErrorNum /*number*/, const char* message) {
  if (severity < CE_Failure) return;
  auto& kept = *static_cast<Failures*>(CPLGetErrorHandlerUserData());
  if (kept.first.empty()) kept.first = message;
  kept.last = message;
}

DatasetPtr openRaster(const std::string& file) {
  const ChosenName chosen(file);
  const NoFolderListing noListing;
  constexpr unsigned flags = GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR;
  // A file system that knows what lies beside a file spares the questions for each of them.
  const CPLStringList beside(VSISiblingFiles(file.c_str()));
  return DatasetPtr(
      GDALDataset::FromHandle(GDALOpenEx(file.c_str(), flags, nullptr, nullptr, beside.List())));
}

}  // namespace vlclientui::client
