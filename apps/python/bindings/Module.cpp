#include <cstring>

#include <link.h>

#include "Bindings.h"

namespace vlclientui::python {
namespace {

/// The library for Qt 5, as QGIS has it, has the same names as the one for Qt 6. They must not mix.
void failBesideOtherQt() {
  const auto isIt = [](dl_phdr_info* library, std::size_t /*size*/, void* /*data*/) {
    return std::strstr(library->dlpi_name, "libVLClientUIHostQt5.so") != nullptr ? 1 : 0;
  };
  if (dl_iterate_phdr(isIt, nullptr) == 0) return;
  throw py::import_error(
      "VLClientUI for Qt 5 is in this process already, as in QGIS with its plugin: import vlclientui in a "
      "Python of its own");
}

}  // namespace
}  // namespace vlclientui::python

PYBIND11_MODULE(_core, module) {  // NOLINT(readability-identifier-naming): the interpreter's name for it
  using namespace vlclientui::python;
  failBesideOtherQt();
  module.doc() = "What is behind the package vlclientui: import that one.";
  translateFailures();
  bindSession(module);
  bindPersons(module);
  bindControls(module);
  bindPages(module);
  bindFrame(module);
  bindDocuments(module);
  bindClient(module);
  bindSelection(module);
  bindProperties(module);
  bindMetadata(module);
  bindViewpoint(module);
  bindExport(module);
  bindHost(module);
  bindDrawing(module);
  bindMap(module);
  bindJobs(module);
  bindKeeping(module);
  bindConnections(module);
}
