#include <chrono>
#include <cmath>

#include <pybind11/stl.h>

#include "Bindings.h"
#include "Session.h"
#include "client/connections/ConnectionBook.h"
#include "contracts/RuntimeFailure.h"
#include "host/ConnectionTrial.h"

namespace vlclientui::python {
namespace {

using client::Connection;
using client::ConnectionBook;
using client::SecretKeeping;
using client::SignIn;
using client::TokenPlace;

Connection makeConnection(const Text& name, const Text& address, const Text& user, const Text& tokenHeader,
                          const Text& tokenParameter) {
  const bool isHeader = !tokenHeader.utf8.empty();
  const bool isToken = isHeader || !tokenParameter.utf8.empty();
  const bool isPassword = !user.utf8.empty();
  if ((isHeader && !tokenParameter.utf8.empty()) || (isToken && isPassword))
    throw RuntimeFailure("Of user, token_header and token_parameter a connection has one only");
  Connection made{.name = name.utf8, .address = address.utf8, .user = user.utf8};
  made.signIn = isPassword ? SignIn::Password : isToken ? SignIn::Token : SignIn::None;
  if (!isToken) return made;
  made.tokenPlace = isHeader ? TokenPlace::Header : TokenPlace::Parameter;
  made.tokenName = isHeader ? tokenHeader.utf8 : tokenParameter.utf8;
  return made;
}

Text tokenIn(const Connection& connection, TokenPlace place) {
  const bool isIt = connection.signIn == SignIn::Token && connection.tokenPlace == place;
  return {isIt ? connection.tokenName : std::string()};
}

SecretKeeping keepingOfSecret(const std::string& word) {
  constexpr std::pair<const char*, SecretKeeping> words[] = {{"best", SecretKeeping::Best},
                                                             {"desktop", SecretKeeping::Desktop},
                                                             {"file", SecretKeeping::File},
                                                             {"session", SecretKeeping::Session}};
  for (const auto& [known, keeping] : words) {
    if (word == known) return keeping;
  }
  throw RuntimeFailure("A secret is kept by one of best, desktop, file and session, not '" + word + "'");
}

std::optional<std::string> secretOf(const std::optional<Text>& secret) {
  return secret ? std::optional(secret->utf8) : std::nullopt;
}

Text save(Session& session, const Connection& connection, const std::optional<Text>& secret, const Text& keep,
          const Text& replaces) {
  session.use();
  const client::ConnectionEdit edit{connection, secretOf(secret), keepingOfSecret(keep.utf8), replaces.utf8};
  return {released([&] { return ConnectionBook::shared().save(edit); })};
}

py::dict tryOut(Session& session, const Connection& connection, const std::optional<Text>& secret) {
  session.use();
  const auto outcome = released([&] {
    return host::tryConnection(ConnectionBook::shared(), *session.host().catalogue, connection,
                               secretOf(secret));
  });
  py::dict told;
  told["answers"] = outcome.isAnswered;
  told["services"] = outcome.services;
  told["words"] = Text{outcome.words};
  return told;
}

constexpr double longestPatience = 24 * 60 * 60;

/// What the function raises is raised by the call that asked for the secret.
std::optional<std::string> answerTo(const Reference& question, const Connection& connection) {
  const Locked lock;
  try {
    const py::object answer = objectOf(question)(connection);
    return answer.is_none() ? std::nullopt : std::optional(py::cast<Text>(answer).utf8);
  } catch (py::error_already_set& raised) {
    keepForCaller(std::move(raised));
  } catch (const py::cast_error&) {
    PyErr_SetString(PyExc_TypeError, "a secret is a text, or None");
    keepForCaller(py::error_already_set());
  }
  return std::nullopt;
}

void ask(Session& session, const py::object& question, double patience) {
  if (!(patience >= 0 && patience <= longestPatience))
    throw py::value_error("patience is a number of seconds, up to a day");
  session.use();
  ConnectionBook::Question asks;
  if (!question.is_none())
    asks = [held = referenceTo(question)](const Connection& asked) { return answerTo(held, asked); };
  released([&] {
    ConnectionBook::shared().setQuestion(std::move(asks),
                                         std::chrono::milliseconds(std::llround(patience * 1000)));
  });
}

void bindConnection(py::module_& module) {
  py::class_<Connection>(module, "Connection",
                         "A server by a name of one's own, which stands for its address wherever a server is "
                         "named. No secret stands in it.")
      .def(py::init(&makeConnection), py::arg("name"), py::arg("address"), py::kw_only(),
           py::arg("user") = Text{}, py::arg("token_header") = Text{}, py::arg("token_parameter") = Text{},
           "Args:\n    name: without \"/\".\n    address: http or https.\n    user: who signs in with a "
           "password.\n"
           "    token_header, token_parameter: of a request, which holds a token.\n"
           "Raises:\n    RuntimeFailure: for more than one of the three.")
      .def_property_readonly(
          "name", [](const Connection& self) { return Text{self.name}; }, "str: its name.")
      .def_property_readonly(
          "address", [](const Connection& self) { return Text{self.address}; }, "str: of the server.")
      .def_property_readonly(
          "user", [](const Connection& self) { return Text{self.user}; },
          "str: who signs in with a password; empty for nobody.")
      .def_property_readonly(
          "token_header", [](const Connection& self) { return tokenIn(self, TokenPlace::Header); },
          "str: the header that holds a token; empty for none.")
      .def_property_readonly(
          "token_parameter", [](const Connection& self) { return tokenIn(self, TokenPlace::Parameter); },
          "str: the parameter that holds a token; empty for none.")
      .def_property_readonly(
          "kept", [](const Connection& self) { return std::string(wordOf(self.kept)); },
          "str: where the secret is kept: desktop, file or session.")
      .def("__eq__", [](const Connection& self, const Connection& other) { return self == other; })
      .def("__repr__", [](const Connection& self) {
        return Text{"<Connection " + self.name + ": " + signInWords(self) + ">"};
      });
}

void bindBook(py::class_<Session, SessionPtr>& session) {
  session
      .def(
          "connections",
          [](Session& self) {
            self.use();
            return released([] { return ConnectionBook::shared().connections(); });
          },
          "The connections of the user.\n\nReturns:\n    list[Connection]: by name.\n"
          "Raises:\n    RuntimeFailure: when their file cannot be read.")
      .def("save_connection", &save, py::arg("connection"), py::arg("secret") = py::none(), py::kw_only(),
           py::arg("keep") = Text{"best"}, py::arg("replaces") = Text{},
           "Adds a connection, or replaces one.\n\n"
           "Args:\n    connection: a user or key in its address becomes that of the connection.\n"
           "    secret: its password or token; None keeps the one that is there.\n"
           "    keep: best (the desktop's store, else the file), desktop, file or session.\n"
           "    replaces: the name of the one that it takes the place of.\n"
           "Returns:\n    str: where the secret is kept, for a person; may be empty.\n"
           "Raises:\n    RuntimeFailure: with what is wrong with it; nothing has changed then.")
      .def(
          "remove_connection",
          [](Session& self, const Text& name) {
            self.use();
            return Text{released([&] { return ConnectionBook::shared().remove(name.utf8); })};
          },
          py::arg("name"),
          "Removes a connection and its secret.\n\nReturns:\n    str: what could not be removed with it; "
          "empty "
          "when all is gone.\nRaises:\n    RuntimeFailure: when there is none of that name.")
      .def("try_connection", &tryOut, py::arg("connection"), py::arg("secret") = py::none(),
           "Asks the server of a connection for its services; what is kept does not change.\n\n"
           "Args:\n    secret: None takes the one that is kept under its name.\n"
           "Returns:\n    dict: answers, services and words for a person.");
}

void bindSecrets(py::class_<Session, SessionPtr>& session) {
  session
      .def("ask_for_secrets", &ask, py::arg("question").none(true), py::kw_only(),
           py::arg("patience") = 120.0,
           "Answers for connections that keep their secret for a session alone, in the whole process.\n\n"
           "Args:\n    question: called with the Connection, on any thread; gives its secret, or None. None "
           "for "
           "no function.\n    patience: seconds that requests of other threads wait for its answer, up to a "
           "day. "
           "Then they fail, since it may be one of them that it waits for.")
      .def(
          "without_secrets",
          [](Session& self, const Text& typed) {
            self.use();
            return Text{released([&] { return ConnectionBook::shared().withoutSecrets(typed.utf8); })};
          },
          py::arg("typed"),
          "A server or reference without the password or key in it, which is used for the rest of this "
          "process: "
          "may be shown and kept.");
}

}  // namespace

void bindConnections(py::module_& module) {
  bindConnection(module);
  auto session = boundClass<py::class_<Session, SessionPtr>>(module, "Session");
  bindBook(session);
  bindSecrets(session);
}

}  // namespace vlclientui::python
