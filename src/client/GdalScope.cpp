#include "client/GdalScope.h"

#include <mutex>

#include <cpl_error.h>

namespace vlclientui::client {
namespace {

void registerDriversOnce() {
  static std::once_flag once;
  std::call_once(once, [] { GDALAllRegister(); });
}

void CPL_STDCALL keepFirstFailure(CPLErr severity, CPLErrorNum, const char* message) {
  auto* failure = static_cast<std::string*>(CPLGetErrorHandlerUserData());
  if (severity >= CE_Failure && failure->empty()) *failure = message;
}

}  // namespace

GdalScope::GdalScope() {
  registerDriversOnce();
  CPLPushErrorHandlerEx(keepFirstFailure, &failure_);
}

GdalScope::~GdalScope() {
  CPLPopErrorHandler();
  CPLErrorReset();
}

std::string GdalScope::firstFailure(const std::string& otherwise) const {
  return failure_.empty() ? otherwise : failure_;
}

DatasetPtr openRaster(const std::string& file) {
  constexpr unsigned flags = GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR;
  return DatasetPtr(GDALDataset::FromHandle(GDALOpenEx(file.c_str(), flags, nullptr, nullptr, nullptr)));
}

}  // namespace vlclientui::client
