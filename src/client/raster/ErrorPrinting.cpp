#include "client/raster/ErrorPrinting.h"

#include <cstdint>

#include <dlfcn.h>
#include <gdal.h>

namespace vlclientui::client {
namespace {

using Hdf5ErrorPrinter = int (*)(std::int64_t stack, void* data);
using SetHdf5ErrorPrinter = int (*)(std::int64_t stack, Hdf5ErrorPrinter printer, void* data);

// GDAL may be built without HDF5, so it is looked for among the libraries that GDAL has loaded.
SetHdf5ErrorPrinter findSetHdf5ErrorPrinter() {
  Dl_info gdal{};
  if (dladdr(reinterpret_cast<const void*>(&GDALAllRegister), &gdal) == 0) return nullptr;
  void* const library = dlopen(gdal.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  if (library == nullptr) return nullptr;
  void* const found = dlsym(library, "H5Eset_auto2");
  dlclose(library);
  return reinterpret_cast<SetHdf5ErrorPrinter>(found);
}

}  // namespace

void stopPrintingErrors() {
  static const SetHdf5ErrorPrinter setPrinter = findSetHdf5ErrorPrinter();
  constexpr std::int64_t stackOfThread = 0;
  thread_local const bool isSet = setPrinter != nullptr && setPrinter(stackOfThread, nullptr, nullptr) >= 0;
  static_cast<void>(isSet);
}

}  // namespace vlclientui::client
