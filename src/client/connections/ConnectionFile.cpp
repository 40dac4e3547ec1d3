#include "client/connections/ConnectionFile.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Json = nlohmann::ordered_json;

constexpr int version = 1;

template <class Value>
using Words = std::array<std::pair<Value, std::string_view>, 3>;

constexpr Words<SignIn> signIns{
    {{SignIn::None, "none"}, {SignIn::Password, "password"}, {SignIn::Token, "token"}}};
constexpr Words<SecretPlace> secretPlaces{{{SecretPlace::Desktop, wordOf(SecretPlace::Desktop)},
                                           {SecretPlace::File, wordOf(SecretPlace::File)},
                                           {SecretPlace::Session, wordOf(SecretPlace::Session)}}};

template <class Value>
std::string wordOf(const Words<Value>& words, Value value) {
  for (const auto& [known, word] : words) {
    if (known == value) return std::string(word);
  }
  return {};
}

template <class Value>
Value valueOf(const Words<Value>& words, const std::string& word) {
  for (const auto& [value, known] : words) {
    if (known == word) return value;
  }
  throw RuntimeFailure("'" + word + "' is unknown");
}

Json written(const StoredConnection& stored) {
  const Connection& connection = stored.connection;
  Json entry{{"name", connection.name},
             {"address", connection.address},
             {"signIn", wordOf(signIns, connection.signIn)}};
  if (connection.signIn == SignIn::None) return entry;
  if (connection.signIn == SignIn::Password) {
    entry["user"] = connection.user;
  } else {
    entry[connection.tokenPlace == TokenPlace::Header ? "header" : "parameter"] = connection.tokenName;
  }
  entry["kept"] = wordOf(connection.kept);
  if (connection.kept == SecretPlace::File) entry["secret"] = stored.secret;
  if (connection.kept == SecretPlace::Desktop) entry["secretKey"] = stored.secretKey;
  return entry;
}

StoredConnection read(const Json& entry) {
  StoredConnection stored;
  Connection& connection = stored.connection;
  connection.name = entry.at("name").get<std::string>();
  connection.address = entry.at("address").get<std::string>();
  connection.signIn = valueOf(signIns, entry.value("signIn", "none"));
  connection.user = entry.value("user", "");
  if (entry.contains("parameter")) {
    connection.tokenPlace = TokenPlace::Parameter;
    connection.tokenName = entry.at("parameter").get<std::string>();
  } else {
    connection.tokenName = entry.value("header", connection.tokenName);
  }
  connection.kept = valueOf(secretPlaces, entry.value("kept", "desktop"));
  stored.secret = entry.value("secret", "");
  stored.secretKey = entry.value("secretKey", "");
  if (const std::string problem = problemOf(connection); !problem.empty()) throw RuntimeFailure(problem);
  return stored;
}

ConnectionFile::Connections readAll(const std::string& text) {
  const Json document = Json::parse(text);
  if (document.at("version").get<int>() != version) throw RuntimeFailure("its version is unknown");
  ConnectionFile::Connections connections;
  for (const Json& entry : document.at("connections").get_ref<const Json::array_t&>())
    connections.push_back(read(entry));
  return connections;
}

std::string writtenAll(const ConnectionFile::Connections& connections) {
  Json entries = Json::array();
  for (const StoredConnection& stored : connections) entries.push_back(written(stored));
  return Json{{"version", version}, {"connections", std::move(entries)}}.dump(2) + "\n";
}

}  // namespace

// What a parser complains of may hold a piece of the file, and so of a secret.
ConnectionFile::Connections ConnectionFile::parsed(const std::string& text) const {
  std::string reason = "it is no document of connections";
  try {
    return readAll(text);
  } catch (const RuntimeFailure& failure) {
    reason = failure.description();
  } catch (const Json::exception&) {
  }
  throw RuntimeFailure("The connections cannot be used: the file '" + file_.path().string() +
                       "' is damaged (" + reason +
                       "). It stays as it is; mend it, or move it away to begin anew");
}

ConnectionFile::Connections ConnectionFile::read() const {
  const auto text = file_.read();
  return text ? parsed(*text) : Connections();
}

void ConnectionFile::change(const std::function<void(Connections&)>& edit) const {
  file_.change([&](const std::optional<std::string>& before) {
    Connections connections = before ? parsed(*before) : Connections();
    edit(connections);
    return writtenAll(connections);
  });
}

}  // namespace vlclientui::client
