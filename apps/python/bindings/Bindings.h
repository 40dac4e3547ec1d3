#pragma once

#include "Interpreter.h"

/// One function for each part of the module; Module.cpp calls them in this order.
namespace vlclientui::python {

void bindSession(py::module_& module);
void bindPersons(py::module_& module);
void bindControls(py::module_& module);
void bindPages(py::module_& module);
void bindFrame(py::module_& module);
void bindDocuments(py::module_& module);
void bindClient(py::module_& module);
void bindSelection(py::module_& module);
void bindProperties(py::module_& module);
void bindMetadata(py::module_& module);
void bindViewpoint(py::module_& module);
void bindExport(py::module_& module);
void bindHost(py::module_& module);
void bindDrawing(py::module_& module);
void bindJobs(py::module_& module);
void bindKeeping(py::module_& module);
void bindConnections(py::module_& module);
void bindMap(py::module_& module);

}  // namespace vlclientui::python
