#include <pybind11/stl.h>

#include "Bindings.h"
#include "Session.h"
#include "TwinSurfaces.h"
#include "Windows.h"
#include "documents/NumberText.h"
#include "engine/Engine.h"

namespace vlclientui::python {
namespace {

/// As composed, but with surfaces that can be acted on.
Session::Surfaces exposeSurfaces(host::ComposedHost& composed) {
  const auto toolkit = std::dynamic_pointer_cast<headless::HeadlessToolkit>(composed.platform->toolkit);
  auto surfaces = std::make_shared<headless::HeadlessSurfaceFactory>(
      headless::ChildWindowHooks{[toolkit](WindowHandle parent, const std::string& title) {
                                   return toolkit->addChildWindow(parent, title);
                                 },
                                 [toolkit](WindowHandle window) { toolkit->removeWindow(window); }});
  auto parts = std::make_shared<Platform>(*composed.platform);
  parts->plexa = std::make_shared<engine::EngineFactory>(parts->xml, surfaces);
  composed.platform = std::move(parts);
  return surfaces;
}

SessionPtr startHeadless(const PathText& catalogue, const PathText& home, const Text& locale) {
  return released([&] {
    auto composed = host::composeHeadlessPlatform({catalogue.native, home.native, locale.utf8});
    auto surfaces = exposeSurfaces(composed);
    return Session::start(std::move(composed), std::move(surfaces));
  });
}

/// The same for windows that show.
Session::Surfaces twinSurfaces(host::ComposedHost& composed, const std::shared_ptr<Desktop>& desktop) {
  auto twins = std::make_shared<headless::HeadlessSurfaceFactory>();
  const auto engines = std::dynamic_pointer_cast<engine::EngineFactory>(composed.platform->plexa);
  const WindowActs acts{[] { return currentSession()->hasInformationVisit(); },
                        [desktop](std::function<void()> act) { desktop->inNextWindow(std::move(act)); }};
  auto parts = std::make_shared<Platform>(*composed.platform);
  parts->plexa =
      engines->withSurfaces(std::make_shared<TwinSurfaceFactory>(engines->surfaces(), twins, acts));
  composed.platform = std::move(parts);
  return twins;
}

SessionPtr startDesktop(const PathText& catalogue, const PathText& home, const Text& locale) {
  return released([&] {
    const auto desktop = theDesktop();
    auto composed = desktop->compose({catalogue.native, home.native, locale.utf8});
    auto surfaces = twinSurfaces(composed, desktop);
    return Session::start(std::move(composed), std::move(surfaces), desktop);
  });
}

void bindPaths(py::class_<Session, SessionPtr>& session) {
  session
      .def_property_readonly(
          "catalogue", [](const Session& self) { return PathText{self.host().installation.catalogue}; },
          "str: the folder that is served as 127.0.0.1.")
      .def_property_readonly(
          "definitions", [](const Session& self) { return PathText{self.host().installation.definitions}; },
          "str: the folder of VLClient.XADef and VLClient.Xfdef.")
      .def(
          "logic_path",
          [](Session& self, const PathText& path) {
            self.use();
            return Text{self.host().platform->system->logicPath(path.native)};
          },
          py::arg("path"),
          "A path as documents and windows hold it, with a drive.\n\nArgs:\n    path: of this system.")
      .def(
          "native_path",
          [](Session& self, const Text& path) {
            self.use();
            return PathText{self.host().platform->system->nativePath(path.utf8)};
          },
          py::arg("path"), "A path of a document or a window as this system has it.")
      .def(
          "number_to_text",
          [](Session& self, double number) {
            self.use();
            return Text{doubleToText(number, self.host().platform->system->localeFormat())};
          },
          py::arg("number"), "A number as a person types it in this session.");
}

void bindLife(py::class_<Session, SessionPtr>& session) {
  session.def_property_readonly("is_current", &Session::isCurrent, "bool: whether this thread uses it.")
      .def_property_readonly("is_headless", &Session::isHeadless, "bool: whether it shows no windows.")
      .def(
          "close", [](Session& self) { released([&] { self.end(); }); },
          "Ends the session: what was made in it fails from then on. Twice does no harm.")
      .def("__enter__", [](const SessionPtr& self) { return self; })
      .def("__exit__", [](Session& self, const py::args&) { released([&] { self.end(); }); });
}

}  // namespace

void bindSession(py::module_& module) {
  py::class_<Session, SessionPtr> session(module, "Session",
                                          "The library on one thread: what is made in it belongs to that "
                                          "thread. A thread has one session at a time.");
  bindPaths(session);
  bindLife(session);
  module.def("headless", &startHeadless, py::arg("catalogue") = PathText{}, py::arg("home") = PathText{},
             py::arg("locale") = Text{},
             "Starts a session without windows on this thread, in place of the one before.\n\n"
             "Args:\n"
             "    catalogue: the folder served as 127.0.0.1; empty for the samples, or what "
             "VLCLIENTUI_CATALOGUE names.\n"
             "    home: the folder that holds `definitions` and `help`; empty to find it.\n"
             "    locale: how numbers are written, such as de_DE.UTF-8; empty for the user's.\n"
             "Returns:\n    Session: to be closed, or used by `with`.\n"
             "Raises:\n    RuntimeFailure: without an installation, or when the catalogue is no folder.");
  module.def(
      "desktop", &startDesktop, py::arg("catalogue") = PathText{}, py::arg("home") = PathText{},
      py::arg("locale") = Text{},
      "Starts a session with real windows on this thread, in place of the one before.\n\n"
      "The window system is reached now and not before. It belongs to the first thread that asks for it.\n\n"
      "Args:\n    catalogue, home, locale: as of headless.\n"
      "Returns:\n    Session: modal windows run until they are closed; run serves the others.\n"
      "Raises:\n    RuntimeFailure: as headless, without a display, and on another thread than the first.");
  module.def("current_session", &currentSession,
             "The session of this thread.\n\nRaises:\n    RuntimeFailure: without one.");
}

}  // namespace vlclientui::python
