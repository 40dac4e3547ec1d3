#include <pybind11/stl.h>

#include "Bindings.h"
#include "Extents.h"
#include "KeepingWords.h"
#include "ServiceView.h"
#include "client/connections/SentSecret.h"
#include "client/facade/JobRun.h"
#include "client/jobs/JobDocument.h"

namespace vlclientui::python {
namespace {

using client::ExportJob;

template <std::string ExportJob::*member>
void bindText(py::class_<ExportJob>& job, const char* name, const char* words) {
  job.def_property(
      name, [](const ExportJob& self) { return Text{self.*member}; },
      [](ExportJob& self, const Text& text) { self.*member = text.utf8; }, words);
}

void setFormat(ExportJob& job, const Text& name) {
  const FileFormatRow* const row = findFileFormat(name.utf8);
  if (row == nullptr)
    throw RuntimeFailure("There is no format '" + name.utf8 + "'; there are " + allFileFormats());
  job.format = row->format;
}

void setCompression(ExportJob& job, const Text& name) {
  const Compression none = Compression::None;
  const Compression* const found = name.utf8.empty() ? &none : findCompression(name.utf8);
  if (found == nullptr) throw RuntimeFailure("There is no compression '" + name.utf8 + "'");
  job.compression = *found;
}

void bindPlace(py::class_<ExportJob>& job) {
  bindText<&ExportJob::reference>(job, "reference", "str: what the service is opened by.");
  bindText<&ExportJob::properties>(job, "properties",
                                   "str: a service properties document; empty for the service's own.");
  bindText<&ExportJob::system>(job, "system", "str: of the extent; empty for whichever the service has.");
  job.def_property(
         "extent", [](const ExportJob& self) { return extentOf(self.extent); },
         [](ExportJob& self, const Extent& extent) { self.extent = boundsOf(extent); },
         "tuple: xmin, ymin, xmax, ymax in the system.")
      .def_readwrite("columns", &ExportJob::columns, "int: of the image.")
      .def_readwrite("rows", &ExportJob::rows, "int: of the image.");
}

std::filesystem::path absolutePath(const PathText& path) {
  std::error_code problem;
  std::filesystem::path made = std::filesystem::absolute(path.native, problem);
  if (problem) throw RuntimeFailure("\"" + path.native + "\" is no path of a file: " + problem.message());
  return made;
}

void bindOutput(py::class_<ExportJob>& job) {
  job.def_property(
         "format", [](const ExportJob& self) { return rowOf(self.format).requestName; }, &setFormat,
         "str: Tiff, JPEG, JPEG2000 or PNG.")
      .def_property(
          "compression", [](const ExportJob& self) { return requestName(self.compression); }, &setCompression,
          "str: of a Tiff, JPEG or LZ77; empty for none.")
      .def_readwrite("tile_size", &ExportJob::tileSize, "int: pixels a side; 0 for none.")
      .def_readwrite("quality", &ExportJob::quality, "int: 0 to 100.")
      .def_readwrite("creates_world_file", &ExportJob::createsWorldFile,
                     "bool: whether a world file is written beside it.")
      .def_readwrite("exports_metadata", &ExportJob::exportsMetadata,
                     "bool: whether its metadata are written beside it.")
      .def_property(
          "file", [](const ExportJob& self) { return PathText{self.file}; },
          [](ExportJob& self, const PathText& file) { self.file = absolutePath(file); },
          "str: the file, under exactly this name.")
      .def("__eq__", [](const ExportJob& self, const ExportJob& other) { return self == other; })
      .def("__repr__", [](const ExportJob& self) {
        return Text{"<ExportJob " + client::withoutTypedSecrets(self.reference).text + " to " +
                    self.file.string() + ">"};
      });
}

const XmlService& xmlOf(const SessionPtr& session) {
  session->use();
  return *session->host().platform->xml;
}

void run(const SessionPtr& session, const ExportJob& job, const py::object& progress, const Text& keep) {
  const XmlService& xml = xmlOf(session);
  const Reference asked = progress.is_none() ? Reference() : referenceTo(progress);
  const host::ComposedHost& host = session->host();
  released([&] {
    client::JobRun how;
    how.keeping = keepingOf(keep.utf8);
    how.settings = {host.installation.definitions, [&](double share) { return goesOn(asked, share); }};
    client::runJob(job, host.catalogue, xml, how);
  });
}

// Jobs are taken by value: while others run, Python may change its own.
void bindSessionJobs(py::class_<Session, SessionPtr>& session) {
  session
      .def(
          "open_job",
          [](const SessionPtr& self, const PathText& file) {
            const XmlService& xml = xmlOf(self);
            return released([&] { return client::openJob(absolutePath(file), xml); });
          },
          py::arg("file"),
          "Reads a job.\n\nReturns:\n    ExportJob: whole and checked.\n"
          "Raises:\n    RuntimeFailure: naming the file and why it is no job.")
      .def(
          "read_job",
          [](const SessionPtr& self, const Text& document, const PathText& folder) {
            const XmlService& xml = xmlOf(self);
            return released([&] { return client::readJob(document.utf8, absolutePath(folder), xml); });
          },
          py::arg("document"), py::arg("folder") = PathText{"."},
          "Reads the document of a job.\n\nArgs:\n    folder: from which relative paths count.\n"
          "Raises:\n    RuntimeFailure: for a document that is no job.")
      .def(
          "job_document",
          [](const SessionPtr& self, ExportJob job) {
            const XmlService& xml = xmlOf(self);
            return Text{released([&] { return client::jobDocument(job, xml); })};
          },
          py::arg("job"), "The document of a job.")
      .def(
          "save_job",
          [](const SessionPtr& self, ExportJob job, const PathText& file) {
            const XmlService& xml = xmlOf(self);
            released([&] { client::saveJob(job, absolutePath(file), xml); });
          },
          py::arg("job"), py::arg("file"),
          "Writes a job, whole or not at all.\n\nRaises:\n    RuntimeFailure: when it cannot be written.");
}

void bindRunning(py::class_<Session, SessionPtr>& session) {
  session.def("run_job", &run, py::arg("job"), py::arg("progress") = py::none(),
              py::arg("keep") = Text{"nothing"},
              "Opens the service, makes folders that the file needs, and writes it, whole or not at all.\n\n"
              "Args:\n    progress: as of CatalogueImageService.set_progress.\n"
              "    keep: as of CatalogueImageService.keeping.\n"
              "Raises:\n    RuntimeFailure: with why nothing was written.");
}

}  // namespace

void bindJobs(py::module_& module) {
  py::class_<ExportJob> job(
      module, "ExportJob",
      "A whole export as plain values. Made twice of unchanged rasters it gives the same file.");
  job.def(py::init<>());
  bindPlace(job);
  bindOutput(job);
  auto session = boundClass<py::class_<Session, SessionPtr>>(module, "Session");
  bindSessionJobs(session);
  bindRunning(session);
  boundClass<py::class_<ServiceView>>(module, "CatalogueImageService")
      .def(
          "job",
          [](const ServiceView& self) {
            const auto object = self.use();
            return released([&] { return object->job(); });
          },
          "What the request handed over last says, as a job.\n\nRaises:\n    RuntimeFailure: before any "
          "request.");
}

}  // namespace vlclientui::python
