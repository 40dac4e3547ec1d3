#include <filesystem>
#include <system_error>

#include <pybind11/stl.h>

#include "Bindings.h"
#include "Cycles.h"
#include "Extents.h"
#include "ServiceView.h"
#include "client/facade/ExportForecast.h"

namespace vlclientui::python {
namespace {

using client::CatalogueImageService;
using client::RasterFacts;

/// A file may be named from where the program stands; any other reference is a whole one.
std::string wholeReference(const std::string& reference) {
  std::error_code error;
  if (!std::filesystem::exists(reference, error)) return reference;
  return std::filesystem::absolute(reference).lexically_normal().string();
}

ServiceView openService(const SessionPtr& session, const PathText& reference, bool isNewer) {
  session->use();
  const host::ComposedHost& host = session->host();
  return {session, released([&]() -> std::shared_ptr<CatalogueImageService> {
            const client::ImageServiceSettings settings{.definitionFolder = host.installation.definitions};
            const std::string whole = wholeReference(reference.native);
            if (!isNewer) {
              return std::make_shared<CatalogueImageService>(host.catalogue, *host.platform->xml, whole,
                                                             settings);
            }
            return std::make_shared<client::OVLCatalogueImageService>(host.catalogue, *host.platform->xml,
                                                                      whole, settings);
          })};
}

ServerClientView makeClient(const SessionPtr& session, bool isNewer) {
  session->use();
  if (!isNewer) return {session, std::make_shared<client::CatalogueServerClient>(session->host().catalogue)};
  return {session, std::make_shared<client::OVLCatalogueServerClient>(session->host().catalogue)};
}

std::string askServer(Object& client, const std::string& request) {
  if (auto* const newer = dynamic_cast<IOVLServerClient*>(&client)) return newer->GetServerInfo(request);
  return dynamic_cast<IServerClient&>(client).GetServerInfo(request);
}

/// A member that gives a text, without the lock.
template <class... Arguments>
auto text(std::string (CatalogueImageService::*member)(Arguments...)) {
  return
      [member](const ServiceView& self,
               std::conditional_t<std::is_same_v<Arguments, std::int32_t>, std::int32_t, Text>... arguments) {
        const auto service = self.use();
        const auto plain = [](const auto& argument) -> decltype(auto) {
          if constexpr (std::is_same_v<std::decay_t<decltype(argument)>, Text>) {
            return (argument.utf8);
          } else {
            return argument;
          }
        };
        return Text{released([&] { return (service.get()->*member)(plain(arguments)...); })};
      };
}

void bindFacts(py::module_& module) {
  py::class_<RasterFacts>(module, "RasterFacts",
                          "What is known of a service as a whole. Texts are empty where nothing is.")
      .def_property_readonly(
          "title", [](const RasterFacts& self) { return Text{self.title}; }, "str: never empty.")
      .def_property_readonly(
          "region", [](const RasterFacts& self) { return Text{self.region}; }, "str: where it lies.")
      .def_property_readonly(
          "pixel_unit", [](const RasterFacts& self) { return Text{self.pixelUnit}; },
          "str: unit of the values.")
      .def_property_readonly(
          "pixel_type", [](const RasterFacts& self) { return Text{self.pixelType}; },
          "str: Byte, UInt16, Float32 and so on.")
      .def_readonly("band_count", &RasterFacts::bandCount, "int: all bands.")
      .def_readonly("columns", &RasterFacts::columns, "int: of the pixels, north up.")
      .def_readonly("rows", &RasterFacts::rows, "int: of the pixels, north up.")
      .def_readonly("pixel_size", &RasterFacts::pixelSize,
                    "float: across, in units of the coordinate system.")
      .def_readonly("pixel_height", &RasterFacts::pixelHeight,
                    "float: down, in units of the coordinate system.")
      .def_property_readonly(
          "extent", [](const RasterFacts& self) { return extentOf(self.envelope); },
          "tuple: xmin, ymin, xmax, ymax in the coordinates of the service.")
      .def_property_readonly(
          "system_name", [](const RasterFacts& self) { return Text{self.srsName}; },
          "str: of the coordinate system.")
      .def_property_readonly(
          "system_id", [](const RasterFacts& self) { return Text{self.srsId}; }, "str: EPSG:32632 and so on.")
      .def_property_readonly(
          "system_wkt", [](const RasterFacts& self) { return Text{self.srsWkt}; },
          "str: the whole definition.");
}

void bindDocumentsOf(py::class_<ServiceView>& service) {
  service
      .def("getProperty", text(&CatalogueImageService::getProperty), py::arg("key"),
           "A definition.\n\nRaises:\n    RuntimeFailure: of the older generation, and for an unknown key.")
      .def("GetDefinition", text(&CatalogueImageService::GetDefinition), py::arg("kind"),
           "A definition.\n\nArgs:\n    kind: 1 to 4.\nRaises:\n    RuntimeFailure: for any other.")
      .def("GetImageMetadata", text(&CatalogueImageService::GetImageMetadata), py::arg("level") = Text{},
           "The metadata of the image last returned.\n\nArgs:\n    level: Basic, Full or empty.")
      .def("GetMetaData", text(&CatalogueImageService::GetMetaData), py::arg("key") = Text{},
           "The metadata document of the service.")
      .def_property_readonly("ServiceInfo", text(&CatalogueImageService::ServiceInfo),
                             "str: the service info document.")
      .def_property_readonly("status", text(&CatalogueImageService::status),
                             "str: a document whose //Item/Message tells why the last call failed.")
      .def_property(
          "ServiceProperties", text(&CatalogueImageService::ServiceProperties),
          [](const ServiceView& self, const Text& document) {
            const auto object = self.use();
            released([&] { object->setServiceProperties(document.utf8); });
          },
          "str: the service properties document. Written, it changes how the service is drawn from now on; "
          "what it lacks\n"
          "stays. Raises RuntimeFailure for a text that is none.");
}

void bindExporting(py::class_<ServiceView>& service) {
  service
      .def(
          "SaveProperties",
          [](const ServiceView& self, const PathText& file) {
            const auto object = self.use();
            return released([&] { return object->SaveProperties(file.native); });
          },
          py::arg("fileName"),
          "Writes a reference file.\n\nReturns:\n    bool: False for a failure that status tells.")
      .def_property(
          "ExportProperties", nullptr,
          [](const ServiceView& self, const Text& request) {
            const auto object = self.use();
            released([&] { object->ExportProperties(request.utf8); });
          },
          "str: the request of the next ExportImage. Written only.")
      .def(
          "ExportImage",
          [](const ServiceView& self) {
            const auto object = self.use();
            return released([&] { return object->ExportImage(); });
          },
          "Writes the file that was asked for, whole or not at all.\n\n"
          "Returns:\n    bool: False for a failure that status tells, also when it was canceled or the "
          "progress function raised.")
      .def("set_progress", &ServiceView::setProgress, py::arg("progress").none(true),
           "Hears how far exports are.\n\n"
           "Args:\n    progress: called with the share done, 0 to 1; False cancels. What it raises ends the "
           "export as\n"
           "        its failure. None for nobody.");
}

void bindService(py::module_& module) {
  py::class_<ServiceView> service(
      module, "CatalogueImageService",
      "An image service of this library. It belongs to the thread of its session; `drawing`\n"
      "gives what any thread may draw.",
      collected<ServiceView>());
  bindDocumentsOf(service);
  bindExporting(service);
  service
      .def_property_readonly(
          "type_name", [](const ServiceView& self) { return Text{self.use()->typeName()}; },
          "str: ImageService, or IOVLImageService of the newer generation.")
      .def_property_readonly(
          "facts",
          [](const ServiceView& self) {
            const auto object = self.use();
            return released([&] { return object->facts(); });
          },
          "RasterFacts: of the whole service, by its present properties.")
      .def_property_readonly(
          "source_extents",
          [](const ServiceView& self) {
            const auto object = self.use();
            std::vector<Extent> extents;
            for (const client::Bounds& place : released([&] { return object->sourcePlaces(); }))
              extents.push_back(extentOf(place));
            return extents;
          },
          "list[tuple]: rectangles of a mosaic's sources, bottom first; none for one raster.")
      .def_property_readonly(
          "viewpoint",
          [](const ServiceView& self) {
            const auto object = self.use();
            const client::Point point = released([&] { return object->viewPoint(); });
            return std::pair(point.x, point.y);
          },
          "tuple[float, float]: the one that counts, in the coordinates of the service.");
}

}  // namespace

void bindClient(py::module_& module) {
  bindFacts(module);
  bindService(module);
  py::class_<ServerClientView>(module, "CatalogueServerClient", "A client of the library's own servers.")
      .def(
          "GetServerInfo",
          [](const ServerClientView& self, const Text& request) {
            const auto object = self.use();
            return Text{released([&] { return askServer(*object, request.utf8); })};
          },
          py::arg("request"),
          "Asks for the services of a server.\n\nReturns:\n    str: the server info document; empty without "
          "an answer.\n"
          "Raises:\n    RuntimeFailure: for a request that is no document.")
      .def_property_readonly(
          "type_name", [](const ServerClientView& self) { return Text{self.use()->typeName()}; },
          "str: IServerClient, or IOVLServerClient of the newer generation.");
  boundClass<py::class_<Session, SessionPtr>>(module, "Session")
      .def("open", &openService, py::arg("reference"), py::arg("newer") = true,
           "Opens a service.\n\n"
           "Args:\n"
           "    reference: ImageService://server/name, VLDef://file, or a path of a raster, definition or "
           "reference file.\n"
           "    newer: whether it is of the newer generation.\n"
           "Returns:\n    CatalogueImageService: for this thread.\n"
           "Raises:\n    RuntimeFailure: when it leads to nothing readable.")
      .def("server_client", &makeClient, py::arg("newer") = true,
           "A client of the library's own servers, for the dialogs.\n\nReturns:\n    CatalogueServerClient: "
           "of either generation.");
}

}  // namespace vlclientui::python
