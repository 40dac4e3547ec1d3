#include <pybind11/stl.h>

#include "Bindings.h"
#include "Session.h"
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

struct SeenMessage {
  Text text;
  Text title;
  int icon;
  int buttons;
};

std::vector<SeenMessage> messagesOf(Session& session) {
  session.use();
  std::vector<SeenMessage> seen;
  for (const MessageBox& box : session.headlessToolkit().messages()) {
    seen.push_back({{box.text}, {box.title}, static_cast<int>(box.icon), static_cast<int>(box.buttons)});
  }
  return seen;
}

std::vector<Text> texts(const std::vector<std::string>& given) {
  std::vector<Text> shown;
  for (const std::string& text : given) shown.push_back({text});
  return shown;
}

void bindMessages(py::class_<Session, SessionPtr>& session, py::module_& module) {
  py::class_<SeenMessage>(module, "MessageBox", "A message that was shown.")
      .def_readonly("text", &SeenMessage::text, "str: what it told.")
      .def_readonly("title", &SeenMessage::title, "str: its title; empty for the program's own.")
      .def_readonly("icon", &SeenMessage::icon,
                    "int: 0, 16 critical, 32 question, 48 warning, 64 information.")
      .def_readonly("buttons", &SeenMessage::buttons,
                    "int: 0 OK, 1 OK and Cancel, 3 Yes, No and Cancel, 4 Yes and No.");
  session
      .def_property_readonly("messages", &messagesOf,
                             "list[MessageBox]: those shown so far, without windows alone.")
      .def_property_readonly(
          "failures",
          [](Session& self) {
            self.use();
            return texts(self.headlessToolkit().failures());
          },
          "list[str]: failures that no handler took, as a person was told of them.")
      .def(
          "answer_message",
          [](Session& self, int answer) {
            self.use();
            self.headlessToolkit().answerMessage(static_cast<MessageAnswer>(answer));
          },
          py::arg("answer"),
          "Answers the next message that asks; without one the first button is the answer.\n\n"
          "Args:\n    answer: a MessageAnswer.\nRaises:\n    RuntimeFailure: on real windows.")
      .def(
          "choose_file",
          [](Session& self, const PathText& path) {
            self.use();
            self.headlessToolkit().chooseFile(self.host().platform->system->logicPath(path.native));
          },
          py::arg("path"),
          "Chooses the file of the next file dialog; without one the person cancels.\n\n"
          "Args:\n    path: of this system.\nRaises:\n    RuntimeFailure: on real windows.");
}

void bindPersons(py::class_<Session, SessionPtr>& session) {
  session
      .def(
          "when_window_appears",
          [](Session& self, py::function visit) {
            self.use();
            self.awaitWindow(std::move(visit));
          },
          py::arg("visit"),
          "Lets a function act in the next modal window, in a person's place.\n\n"
          "Functions act in the order in which they were given. A window that nobody awaits is closed by its "
          "frame, and\n"
          "so is one that its function leaves open. What the function raises is raised by the call that "
          "showed the\n"
          "window.\n\nArgs:\n    visit: called with the Window.")
      .def(
          "forget_visits",
          [](Session& self) {
            self.use();
            self.forgetVisits();
          },
          "Lets nobody await a window any more.")
      .def(
          "when_information_appears",
          [](Session& self, const py::object& visit) {
            self.use();
            static_cast<void>(self.surfaces());
            self.awaitInformation(visit);
          },
          py::arg("visit").none(true),
          "Lets a function read each separate window of a service's information.\n\n"
          "Args:\n    visit: called with the caption and the Page; None for nobody.\n"
          "Raises:\n    RuntimeFailure: on real windows.")
      .def(
          "add_host_window",
          [](Session& self, const Text& title) {
            self.use();
            return self.headlessToolkit().addHostWindow(title.utf8);
          },
          py::arg("title") = Text{"host"},
          "Makes a window of the host, in which pages can stand.\n\nReturns:\n    int: its handle.\n"
          "Raises:\n    RuntimeFailure: on real windows.");
}

void bindLife(py::class_<Session, SessionPtr>& session) {
  session.def_property_readonly("is_current", &Session::isCurrent, "bool: whether this thread uses it.")
      .def_property_readonly("is_headless", &Session::isHeadless, "bool: whether it shows no windows.")
      .def_property_readonly(
          "clipboard",
          [](Session& self) {
            self.use();
            return Text{self.headlessToolkit().clipboardText()};
          },
          "str: what was copied last, without windows alone.")
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
          py::arg("number"), "A number as a person types it in this session.")
      .def("close", &Session::end,
           "Ends the session: what was made in it fails from then on. Twice does no harm.")
      .def("__enter__", [](const SessionPtr& self) { return self; })
      .def("__exit__", [](Session& self, const py::args&) { self.end(); });
}

}  // namespace

void bindSession(py::module_& module) {
  py::class_<Session, SessionPtr> session(module, "Session",
                                          "The library on one thread: what is made in it belongs to that "
                                          "thread. A thread has one session at a time.");
  bindMessages(session, module);
  bindPersons(session);
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
  module.def("current_session", &currentSession,
             "The session of this thread.\n\nRaises:\n    RuntimeFailure: without one.");
}

}  // namespace vlclientui::python
