#include <pybind11/stl.h>

#include "Bindings.h"
#include "Extents.h"
#include "ServiceView.h"
#include "client/facade/CatalogueServerClient.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"
#include "host/OfferedExtents.h"
#include "host/Services.h"
#include "host/ShownText.h"

namespace vlclientui::python {
namespace {

using host::ServiceDescription;

Text serverInfo(const SessionPtr& session, const Text& server) {
  session->use();
  return {released([&] {
    client::OVLCatalogueServerClient client(session->host().catalogue);
    std::string reason;
    const SilenceListener listener([&](const SilentEnd& end) { reason = end.reason; });
    std::string answer = client.GetServerInfo(host::serverInfoRequest(server.utf8));
    if (!answer.empty()) return answer;
    const bool isToldWhy = reasonOfServerSilence(reason).has_value();
    throw RuntimeFailure(isToldWhy ? reason : "The server '" + server.utf8 + "' does not answer");
  })};
}

std::vector<ServiceDescription> listServices(const SessionPtr& session, const Text& server) {
  const Text answer = serverInfo(session, server);
  return released([&] { return host::readServices(*session->host().platform->xml, answer.utf8); });
}

std::vector<ServiceDescription> readServices(const SessionPtr& session, const Text& document) {
  session->use();
  return released([&] { return host::readServices(*session->host().platform->xml, document.utf8); });
}

std::optional<Extent> degreesOf(const ServiceDescription& service) {
  if (!service.envelope) return std::nullopt;
  const auto& envelope = *service.envelope;
  return Extent{envelope.xMin, envelope.yMin, envelope.xMax, envelope.yMax};
}

template <std::string ServiceDescription::*member>
Text textOf(const ServiceDescription& service) {
  return {service.*member};
}

void bindDescription(py::module_& module) {
  py::class_<ServiceDescription>(
      module, "ServiceDescription",
      "What a server says about one service. Texts are empty where it says nothing.")
      .def_property_readonly("name", &textOf<&ServiceDescription::name>,
                             "str: whole, with \"/\" between folders.")
      .def_property_readonly("title", &textOf<&ServiceDescription::title>, "str: its title.")
      .def_property_readonly("region", &textOf<&ServiceDescription::region>, "str: where it lies.")
      .def_property_readonly("pixel_unit", &textOf<&ServiceDescription::pixelUnit>,
                             "str: unit of the values.")
      .def_property_readonly("pixel_source", &textOf<&ServiceDescription::pixelSource>,
                             "str: sensor or product.")
      .def_property_readonly("color_space", &textOf<&ServiceDescription::colorSpace>, "str: a label.")
      .def_property_readonly("pixel_type", &textOf<&ServiceDescription::pixelType>,
                             "str: Byte, Float32 and so on.")
      .def_property_readonly("bit_depth", &textOf<&ServiceDescription::bitDepth>, "str: bits of a sample.")
      .def_property_readonly("bands", &textOf<&ServiceDescription::bands>, "str: how many.")
      .def_property_readonly("extent", &degreesOf, "tuple | None: xmin, ymin, xmax, ymax in WGS 84 degrees.")
      .def("__repr__",
           [](const ServiceDescription& self) { return Text{"<ServiceDescription " + self.name + ">"}; });
}

using Place = std::pair<Text, Extent>;

Text offerExtents(const ServiceView& service, const std::vector<Place>& places) {
  std::vector<host::NamedPlace> named;
  for (const auto& [description, extent] : places) {
    const client::Bounds bounds = boundsOf(extent);
    named.push_back({description.utf8, {bounds.xMin, bounds.yMin, bounds.xMax, bounds.yMax}});
  }
  const auto object = service.use();
  return {released([&] { return host::offeredExtents(*object, named); })};
}

}  // namespace

void bindHost(py::module_& module) {
  bindDescription(module);
  module.def(
      "service_reference",
      [](const Text& server, const Text& name) {
        return Text{host::serviceReference(server.utf8, name.utf8)};
      },
      py::arg("server"), py::arg("name"), "The reference that opens and exports a service.");
  boundClass<py::class_<ServiceView>>(module, "CatalogueImageService")
      .def("offered_extents", &offerExtents, py::arg("places"),
           "The document with a map's extents for iExportImageDialog_ShowModalDialogEx.\n\n"
           "Args:\n    places: pairs of a description and (xmin, ymin, xmax, ymax) in WGS 84 degrees.\n"
           "Returns:\n    str: those that lie on the service, in its coordinates.");
  boundClass<py::class_<Session, SessionPtr>>(module, "Session")
      .def("services", &listServices, py::arg("server") = Text{"127.0.0.1"},
           "The services of a server.\n\n"
           "Args:\n    server: 127.0.0.1 for the catalogue, a folder, a host, an address, the name of a "
           "connection.\n"
           "Returns:\n    list[ServiceDescription]: in the order of the server.\n"
           "Raises:\n    RuntimeFailure: when it does not answer, with the reason where there is one.")
      .def("server_info", &serverInfo, py::arg("server") = Text{"127.0.0.1"},
           "The server info document.\n\nRaises:\n    RuntimeFailure: when the server does not answer.")
      .def("read_services", &readServices, py::arg("document"),
           "The services of a server info document.\n\nRaises:\n    RuntimeFailure: for a text that is none.")
      .def(
          "shown_text",
          [](const SessionPtr& session, const Text& text) {
            session->use();
            return Text{released([&] { return host::shownText(session->host(), text.utf8); })};
          },
          py::arg("text"), "A text of the library with the paths of this system.");
}

}  // namespace vlclientui::python
