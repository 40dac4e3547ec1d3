#include <algorithm>
#include <array>
#include <utility>

#include "ConnectionsCommand.h"
#include "Words.h"

namespace vlclientui::vlhost {
namespace {

using client::SecretKeeping;
using client::SignIn;
using client::TokenPlace;
using Verb = ConnectionsCommand::Verb;

template <class Value, std::size_t count>
Value valueOf(const std::array<std::pair<const char*, Value>, count>& words, const std::string& word,
              const std::string& complaint) {
  for (const auto& [known, value] : words) {
    if (word == known) return value;
  }
  throw Misuse(complaint);
}

constexpr std::array<std::pair<const char*, Verb>, 4> verbs{
    {{"list", Verb::List}, {"add", Verb::Add}, {"try", Verb::Try}, {"remove", Verb::Remove}}};
constexpr std::array<std::pair<const char*, SecretKeeping>, 3> keepings{
    {{"desktop", SecretKeeping::Desktop},
     {"file", SecretKeeping::File},
     {"session", SecretKeeping::Session}}};

bool acceptsAnything(const std::string& /*word*/) { return true; }

std::string takeText(Words& words, const std::string& option) {
  const auto value = words.takeValue(acceptsAnything);
  if (!value || value->empty()) throw Misuse("nothing behind '" + option + "'");
  return *value;
}

/// @throws Misuse for a second way.
void signIn(ConnectionsCommand& command, SignIn way) {
  if (command.connection.signIn != SignIn::None)
    throw Misuse("of '--user', '--token', '--token-header' and '--token-parameter' there can be one only");
  command.connection.signIn = way;
}

/// @returns whether the option is one of those that tell how to sign in.
bool takeSignIn(ConnectionsCommand& command, const std::string& option, Words& words) {
  client::Connection& connection = command.connection;
  if (option == "--user") {
    signIn(command, SignIn::Password);
    connection.user = takeText(words, option);
  } else if (option == "--token") {
    signIn(command, SignIn::Token);
  } else if (option == "--token-header" || option == "--token-parameter") {
    signIn(command, SignIn::Token);
    const bool isHeader = option == "--token-header";
    connection.tokenPlace = isHeader ? TokenPlace::Header : TokenPlace::Parameter;
    connection.tokenName = takeText(words, option);
  } else {
    return false;
  }
  return true;
}

void takeAddOption(ConnectionsCommand& command, const std::string& option, Words& words) {
  if (takeSignIn(command, option, words)) return;
  if (option == "--password-file") {
    command.secretFile = takeText(words, option);
  } else if (option == "--keep") {
    command.keeping =
        valueOf(keepings, takeText(words, option), "'--keep' wants one of desktop, file and session");
  } else if (option == "--replace") {
    command.present = ConnectionsCommand::Present::Replace;
  } else {
    throw Misuse("unknown option '" + option + "'");
  }
}

void takePlain(ConnectionsCommand& command, std::vector<std::string>& plain) {
  const std::size_t wanted = command.verb == Verb::List ? 0 : command.verb == Verb::Add ? 2 : 1;
  if (plain.size() > wanted) throw Misuse("cannot make sense of '" + plain[wanted] + "'");
  if (plain.size() < wanted) throw Misuse(plain.empty() ? "no connection is named" : "no address is given");
  if (wanted > 0) command.connection.name = plain[0];
  if (wanted > 1) command.connection.address = plain[1];
}

/// @throws Misuse where the address signs in already, so that an option would count for nothing.
void refuseSecondSignIn(const ConnectionsCommand& command) {
  const auto edit = client::withoutAddressSecrets({command.connection, std::nullopt, command.keeping, ""});
  if (edit.connection.address == command.connection.address) return;
  if (command.connection.signIn != SignIn::None)
    throw Misuse("the address tells who signs in already; leave that out, or '--user' and '--token'");
  if (edit.secret && !command.secretFile.empty())
    throw Misuse("the address holds a password or key already; leave that out, or '--password-file'");
}

}  // namespace

ConnectionsCommand parseConnections(const std::vector<std::string>& arguments) {
  ConnectionsCommand command;
  const std::string complaint = "'connections' wants one of list, add, try and remove";
  Words words(arguments);
  if (words.atEnd()) throw Misuse(complaint);
  command.verb = valueOf(verbs, words.take(), complaint);
  std::vector<std::string> plain;
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (!word.starts_with("-")) {
      plain.push_back(word);
    } else if (word == "--json") {
      command.isJson = true;
    } else if (command.verb == Verb::Add) {
      takeAddOption(command, word, words);
    } else {
      throw Misuse("unknown option '" + word + "'");
    }
  }
  takePlain(command, plain);
  if (command.verb == Verb::Add) refuseSecondSignIn(command);
  return command;
}

}  // namespace vlclientui::vlhost
