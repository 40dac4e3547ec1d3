#include <pybind11/stl.h>

#include "Bindings.h"
#include "Session.h"
#include "Windows.h"

namespace vlclientui::python {
namespace {

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

void bindSeen(py::module_& module) {
  py::class_<SeenMessage>(module, "MessageBox", "A message that was shown.")
      .def_readonly("text", &SeenMessage::text, "str: what it told.")
      .def_readonly("title", &SeenMessage::title, "str: its title; empty for the program's own.")
      .def_readonly("icon", &SeenMessage::icon,
                    "int: 0, 16 critical, 32 question, 48 warning, 64 information.")
      .def_readonly("buttons", &SeenMessage::buttons,
                    "int: 0 OK, 1 OK and Cancel, 3 Yes, No and Cancel, 4 Yes and No.");
}

void bindMessages(py::class_<Session, SessionPtr>& session) {
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
      .def_property_readonly(
          "clipboard",
          [](Session& self) {
            self.use();
            return Text{self.headlessToolkit().clipboardText()};
          },
          "str: what was copied last, without windows alone.")
      .def(
          "answer_message",
          [](Session& self, int answer) {
            self.use();
            self.answerMessage(static_cast<MessageAnswer>(answer));
          },
          py::arg("answer"),
          "Answers the next message that asks; without one the first button is the answer, on real windows a "
          "person "
          "gives it.\n\nArgs:\n    answer: a MessageAnswer.")
      .def(
          "choose_file",
          [](Session& self, const PathText& path) {
            self.use();
            self.chooseFile(path.native);
          },
          py::arg("path"),
          "Chooses the file of the next file dialog; without one it is canceled, on real windows a person "
          "chooses.\n\nArgs:\n    path: of this system.");
}

void bindVisits(py::class_<Session, SessionPtr>& session) {
  session
      .def(
          "when_window_appears",
          [](Session& self, py::function visit) {
            self.use();
            self.awaitWindow(std::move(visit));
          },
          py::arg("visit"),
          "Lets a function act in the next modal window, in a person's place.\n\n"
          "Functions act in the order in which they were given. Without real windows one that nobody "
          "awaits\nis closed by its frame; so is one that its function leaves open, on both. What the "
          "function raises is raised by the call that "
          "showed the\n"
          "window.\n\nArgs:\n    visit: called with the Window.")
      .def(
          "forget_visits",
          [](Session& self) {
            self.use();
            self.forgetVisits();
          },
          "Lets nobody await a window any more.");
}

void bindWindowsOf(py::class_<Session, SessionPtr>& session) {
  session
      .def(
          "when_information_appears",
          [](Session& self, const py::object& visit) {
            self.use();
            self.awaitInformation(visit);
          },
          py::arg("visit").none(true),
          "Lets a function read each separate window of a service's information.\n\n"
          "Args:\n    visit: called with the caption and the Page; the window closes then. None for nobody.")
      .def(
          "add_host_window",
          [](Session& self, const Text& title) {
            self.use();
            return self.addHostWindow(title.utf8);
          },
          py::arg("title") = Text{"host"},
          "Makes a window of the host, in which pages can stand.\n\nReturns:\n    int: its handle.")
      .def(
          "process_events",
          [](Session& self) {
            self.use();
            released([&] { self.desktop().processEvents(); });
          },
          "Lets windows do what waits.\n\nRaises:\n    RuntimeFailure: without real windows.")
      .def(
          "run",
          [](Session& self) {
            self.use();
            released([&] { self.desktop().run(); });
          },
          "Serves windows of the host until the last one has closed; returns at once without any.\n\n"
          "Raises:\n    RuntimeFailure: without real windows.\n    KeyboardInterrupt: on Ctrl+C.");
}

}  // namespace

void bindPersons(py::module_& module) {
  bindSeen(module);
  auto session = boundClass<py::class_<Session, SessionPtr>>(module, "Session");
  bindMessages(session);
  bindVisits(session);
  bindWindowsOf(session);
}

}  // namespace vlclientui::python
