#include "Bindings.h"

PYBIND11_MODULE(_core, module) {  // NOLINT(readability-identifier-naming): the interpreter's name for it
  using namespace vlclientui::python;
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
}
