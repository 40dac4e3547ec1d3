#include "ConnectionsCommand.h"

#include <algorithm>
#include <array>
#include <iostream>

#include <nlohmann/json.hpp>

#include "HeadlessSession.h"
#include "SecretPrompt.h"
#include "Telling.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Utf8.h"
#include "host/ConnectionTrial.h"

namespace vlclientui::vlhost {
namespace {

using client::Connection;
using client::ConnectionBook;
using client::SecretPlace;
using client::SignIn;
using Json = nlohmann::ordered_json;
using Row = std::array<std::string, 4>;

Row rowOf(const Connection& connection) {
  const bool hasSecret = connection.signIn != SignIn::None;
  return {terminalText(connection.name), terminalText(connection.address),
          hasSecret ? terminalText(client::signInWords(connection)) : "-",
          hasSecret ? std::string(wordOf(connection.kept)) : "-"};
}

std::string table(const std::vector<Connection>& connections) {
  std::vector<Row> rows{{"NAME", "ADDRESS", "SIGN IN", "KEPT IN"}};
  std::ranges::transform(connections, std::back_inserter(rows), rowOf);
  std::vector<std::string> lines(rows.size());
  for (std::size_t column = 0; column < rows.front().size(); ++column) {
    std::size_t width = 0;
    for (const Row& row : rows) width = std::max(width, utf8Characters(row.at(column)));
    for (std::size_t i = 0; i < rows.size(); ++i)
      lines[i] += rows[i].at(column) + std::string(width - utf8Characters(rows[i].at(column)) + 2, ' ');
  }
  std::string text;
  for (std::string& line : lines) text += line.erase(line.find_last_not_of(' ') + 1) + "\n";
  const std::size_t count = connections.size();
  return text + "\n" + std::to_string(count) + (count == 1 ? " connection" : " connections") + "\n";
}

Json jsonOf(const Connection& connection) {
  Json entry{{"name", connection.name}, {"address", connection.address}};
  if (connection.signIn == SignIn::None) return entry;
  if (connection.signIn == SignIn::Password) entry["user"] = connection.user;
  const bool isHeader = connection.tokenPlace == client::TokenPlace::Header;
  if (connection.signIn == SignIn::Token)
    entry[isHeader ? "tokenHeader" : "tokenParameter"] = connection.tokenName;
  entry["kept"] = wordOf(connection.kept);
  return entry;
}

void tellJson(const Json& answer) {
  std::cout << answer.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

int list(const ConnectionsCommand& command) {
  const auto connections = ConnectionBook::shared().connections();
  if (command.isJson) {
    Json entries = Json::array();
    for (const Connection& connection : connections) entries.push_back(jsonOf(connection));
    tellJson(entries);
  } else {
    std::cout << table(connections);
  }
  return 0;
}

Connection known(const std::string& name) {
  if (auto found = ConnectionBook::shared().find(name)) return *std::move(found);
  throw RuntimeFailure("There is no connection '" + name + "'");
}

std::optional<std::string> secretFor(const ConnectionsCommand& command, const Connection& connection) {
  if (connection.signIn == SignIn::None) return std::nullopt;
  if (!command.secretFile.empty()) return secretOfFile(command.secretFile);
  return askedSecret(connection);
}

void warnOfAddress(const Connection& connection, const std::string& given) {
  if (given != connection.address)
    tell(
        "others can see the words of a command line; the password in the address is better typed when asked "
        "for");
  if (connection.signIn != SignIn::None && connection.address.starts_with("http://"))
    tell("the " + secretWord(connection) +
         " travels readable for everybody, since the address begins with http://");
}

/// What is to be saved, but for its secret. @throws RuntimeFailure for what could not be saved whatever the
/// secret.
client::ConnectionEdit editOf(const ConnectionsCommand& command) {
  auto edit = client::withoutAddressSecrets({command.connection, std::nullopt, command.keeping, ""});
  const auto present = ConnectionBook::shared().find(command.connection.name);
  if (present && command.present == ConnectionsCommand::Present::Refuse)
    throw RuntimeFailure("There is a connection '" + present->name + "' already; --replace takes its place");
  if (present) edit.replaced = present->name;
  if (const std::string problem = problemOf(edit.connection); !problem.empty()) throw RuntimeFailure(problem);
  return edit;
}

int add(const ConnectionsCommand& command) {
  client::ConnectionEdit edit = editOf(command);
  const bool isOfSession = command.keeping == client::SecretKeeping::Session;
  if (isOfSession) edit.secret.reset();
  if (!edit.secret && !isOfSession) edit.secret = secretFor(command, edit.connection);
  std::string words = ConnectionBook::shared().save(edit);
  const std::string word = secretWord(edit.connection);
  const std::string ofSession = "The " + word + " is kept for this session only.";
  if (words.starts_with(ofSession))
    words.replace(0, ofSession.size(), "The " + word + " is kept nowhere; each command asks for it.");
  warnOfAddress(edit.connection, command.connection.address);
  if (command.isJson) {
    tellJson({{"name", edit.connection.name}, {"replaced", edit.replaced}, {"words", words}});
    return 0;
  }
  std::cout << (edit.replaced.empty() ? "added " : "replaced ") << terminalText(edit.connection.name) << "\n";
  if (!words.empty()) std::cout << terminalText(words) << "\n";
  return 0;
}

int attempt(const ConnectionsCommand& command) {
  const HeadlessSession session;
  const Connection connection = known(command.connection.name);
  const auto outcome =
      host::tryConnection(ConnectionBook::shared(), *session.host().catalogue, connection, std::nullopt);
  if (command.isJson) {
    Json answer{{"name", connection.name}, {"answers", outcome.isAnswered}};
    if (outcome.isAnswered) answer["services"] = outcome.services;
    if (!outcome.isAnswered) answer["reason"] = outcome.words;
    tellJson(answer);
  } else if (outcome.isAnswered) {
    std::cout << terminalText(outcome.words) << "\n";
  }
  if (!outcome.isAnswered) tell(outcome.words);
  return outcome.isAnswered ? 0 : 1;
}

int remove(const ConnectionsCommand& command) {
  const std::string left = ConnectionBook::shared().remove(command.connection.name);
  if (command.isJson) {
    tellJson({{"name", command.connection.name}, {"left", left}});
  } else {
    std::cout << "removed " << terminalText(command.connection.name) << "\n";
  }
  if (!left.empty()) tell(left);
  return left.empty() ? 0 : 1;
}

}  // namespace

int runConnections(const ConnectionsCommand& command) {
  switch (command.verb) {
    case ConnectionsCommand::Verb::List:
      return list(command);
    case ConnectionsCommand::Verb::Add:
      return add(command);
    case ConnectionsCommand::Verb::Try:
      return attempt(command);
    case ConnectionsCommand::Verb::Remove:
      break;
  }
  return remove(command);
}

}  // namespace vlclientui::vlhost
