#include "client/connections/ConnectionBook.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <utility>

#include "client/connections/ConnectionFile.h"
#include "client/connections/LiveSecrets.h"
#include "client/connections/SentSecret.h"
#include "client/waiting/Turns.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

using Connections = ConnectionFile::Connections;
using Origin = LiveSecrets::Origin;

constexpr const char* fileName = "connections.json";
constexpr const char* stillOnDesktop = " may still be in the secret store of the desktop: ";
constexpr const char* notSaved =
    "The wait for the secret store of the desktop was given up; nothing is saved.";

std::string newKey() {
  constexpr char digits[] = "0123456789abcdef";
  std::random_device source;
  std::string key = "VLClientUI-";
  for (int i = 0; i < 32; ++i) key += digits[source() % 16];
  return key;
}

template <class List>
auto named(List& connections, const std::string& name) {
  return std::ranges::find_if(
      connections, [&](const StoredConnection& stored) { return isSameName(stored.connection.name, name); });
}

// A user and a key, several keys, and what a person typed for the other way to sign in: nobody can tell
// which.
bool isAmbiguous(const ConnectionEdit& edit, const Credentials& found, SignIn way) {
  const bool hasBoth = way == SignIn::Password && !found.parameters.empty();
  const bool isTypedForOther =
      edit.secret && edit.connection.signIn != SignIn::None && edit.connection.signIn != way;
  return hasBoth || found.parameters.size() > 1 || isTypedForOther;
}

}  // namespace

bool keepsSecret(const Connection& before, const Connection& after) {
  if (before.signIn != after.signIn) return false;
  if (after.signIn == SignIn::Password && before.user != after.user) return false;
  return sentSecret(before, "").scope.server == sentSecret(after, "").scope.server;
}

ConnectionEdit withoutAddressSecrets(ConnectionEdit edit) {
  const TypedText typed = withoutTypedSecrets(edit.connection.address);
  const Credentials found = typed.secret ? typed.secret->credentials : Credentials();
  const bool hasUser = !found.user.empty() || !found.password.empty();
  const SignIn way = hasUser ? SignIn::Password : SignIn::Token;
  if (typed.secret && isAmbiguous(edit, found, way)) return edit;
  edit.connection.address = typed.text;
  if (!typed.secret) return edit;
  edit.connection.signIn = way;
  if (hasUser) {
    edit.connection.user = found.user;
    if (!edit.secret && !found.password.empty()) edit.secret = found.password;
  } else {
    edit.connection.tokenPlace = TokenPlace::Parameter;
    edit.connection.tokenName = found.parameters.front().name;
    if (!edit.secret) edit.secret = found.parameters.front().value;
  }
  return edit;
}

struct ConnectionBook::Parts {
  explicit Parts(Settings hostSettings)
      : settings(std::move(hostSettings)), file(settings.folder.empty() ? "" : settings.folder / fileName) {}

  void refresh();
  [[nodiscard]] const std::string* atHand(const StoredConnection& stored) const;
  void bring(const StoredConnection& stored);
  [[nodiscard]] std::optional<StoredConnection> lacking(const Server& server, const std::string& path);
  [[nodiscard]] SecretStore::Found keptSecret(const StoredConnection& stored);
  void refuseWithinQuestion(const Connection& lacking) const;
  [[nodiscard]] std::optional<std::chrono::milliseconds> patienceNow();
  [[nodiscard]] std::optional<StoredConnection> find(const std::string& name);
  [[nodiscard]] Connections all();
  void completeSecret(ConnectionEdit& edit);
  std::string keepOnDesktop(const ConnectionEdit& edit, StoredConnection& stored) const;
  std::string placeSecret(const ConnectionEdit& edit, StoredConnection& stored) const;
  void write(const ConnectionEdit& edit, const StoredConnection& stored) const;
  std::string dropKey(const std::string& key) const;

  const Settings settings;
  const ConnectionFile file;
  LiveSecrets live;
  std::mutex mutex;  ///< of all below
  bool isRead = false;
  PrivateFile::Stamp stamp;
  Connections known;
  std::string problem;                           ///< why the file cannot be used
  std::map<std::string, std::string> ofSession;  ///< by the name of the connection
  std::map<std::string, std::string> brought;    ///< from the desktop, by their keys there
  std::set<std::string> asked;                   ///< names of those that have no secret at hand
  Question question;
  std::optional<std::chrono::milliseconds> patience;
  Turns bringing;              ///< one question to a person at a time
  const CancelToken asking{};  ///< never canceled: tells who works for the question that is open
};

void ConnectionBook::Parts::refresh() {
  if (settings.folder.empty()) return;
  const PrivateFile::Stamp now = file.file().stamp();
  if (isRead && now == stamp) return;
  isRead = true;
  stamp = now;
  known.clear();
  problem.clear();
  asked.clear();
  try {
    known = file.read();
  } catch (const RuntimeFailure& failure) {
    problem = failure.description();
    endSilently(problem);
  }
  std::map<std::string, SentSecret> secrets;
  for (const StoredConnection& stored : known) {
    const std::string* const secret = stored.connection.signIn == SignIn::None ? nullptr : atHand(stored);
    if (secret != nullptr) secrets.emplace(stored.connection.name, sentSecret(stored.connection, *secret));
  }
  live.replaceAll(Origin::Named, std::move(secrets));
}

// Those of the desktop are brought when they are needed.
const std::string* ConnectionBook::Parts::atHand(const StoredConnection& stored) const {
  if (stored.connection.kept == SecretPlace::File) return &stored.secret;
  const bool isOfSession = stored.connection.kept == SecretPlace::Session;
  const auto& secrets = isOfSession ? ofSession : brought;
  const auto found = secrets.find(isOfSession ? stored.connection.name : stored.secretKey);
  return found == secrets.end() ? nullptr : &found->second;
}

Connections ConnectionBook::Parts::all() {
  const std::lock_guard lock(mutex);
  refresh();
  if (!problem.empty()) throw RuntimeFailure(problem);
  return known;
}

std::optional<StoredConnection> ConnectionBook::Parts::find(const std::string& name) {
  Connections connections = all();
  const auto found = named(connections, name);
  return found == connections.end() ? std::nullopt : std::optional(std::move(*found));
}

// The one whose secret a request would take if it were at hand.
std::optional<StoredConnection> ConnectionBook::Parts::lacking(const Server& server,
                                                               const std::string& path) {
  const std::lock_guard lock(mutex);
  refresh();
  const StoredConnection* best = nullptr;
  std::size_t longest = 0;
  for (const StoredConnection& stored : known) {
    const Connection& connection = stored.connection;
    const bool isAtHand = connection.signIn == SignIn::None || atHand(stored) != nullptr;
    if (isAtHand || asked.contains(connection.name)) continue;
    const SecretScope scope = sentSecret(connection, "").scope;
    const bool isWanted = scope.holds(server, path) && live.wouldTake(scope, server, path);
    if (!isWanted || scope.path.size() < longest) continue;
    best = &stored;
    longest = scope.path.size();
  }
  return best == nullptr ? std::nullopt : std::optional(*best);
}

SecretStore::Found ConnectionBook::Parts::keptSecret(const StoredConnection& stored) {
  const Connection& connection = stored.connection;
  if (connection.kept == SecretPlace::File) return {stored.secret, ""};
  if (connection.kept == SecretPlace::Desktop) {
    if (!settings.desktop) return {std::nullopt, "there is no secret store of the desktop"};
    return settings.desktop->find(stored.secretKey);
  }
  Question ask;
  {
    const std::lock_guard lock(mutex);
    const auto session = ofSession.find(connection.name);
    if (session != ofSession.end()) return {session->second, ""};
    ask = question;
  }
  const WaitScope withinQuestion(nullptr, asking);
  return {ask ? ask(connection) : std::nullopt, ""};
}

// It would wait for its own end.
void ConnectionBook::Parts::refuseWithinQuestion(const Connection& lacking) const {
  if (!WaitScope::isUnder(asking)) return;
  throw RuntimeFailure("The " + secretWord(lacking) + " of the connection '" + lacking.name +
                       "' is not at hand, and a question about a secret cannot ask for another one");
}

std::optional<std::chrono::milliseconds> ConnectionBook::Parts::patienceNow() {
  const std::lock_guard lock(mutex);
  return patience;
}

void ConnectionBook::Parts::bring(const StoredConnection& stored) {
  const Connection& connection = stored.connection;
  SecretStore::Found found = keptSecret(stored);
  const std::lock_guard lock(mutex);
  refresh();
  // Whoever removed or changed it meanwhile did not mean the secret to go where it went.
  const auto present = named(known, connection.name);
  if (present == known.end() || *present != stored) return;
  asked.insert(connection.name);
  if (found.secret && !found.secret->empty()) {
    live.put(Origin::Named, connection.name, sentSecret(connection, *found.secret));
    if (connection.kept == SecretPlace::Session) ofSession[connection.name] = *found.secret;
    if (connection.kept == SecretPlace::Desktop) brought[stored.secretKey] = *found.secret;
  } else {
    const std::string why = found.problem.empty() ? "it has to be given again" : found.problem;
    endSilently("the " + secretWord(connection) + " of the connection '" + connection.name +
                "' is not at hand: " + why);
  }
}

// The secret that is kept, where none is given. It is not taken along to another server or user.
void ConnectionBook::Parts::completeSecret(ConnectionEdit& edit) {
  const bool needsNone = edit.connection.signIn == SignIn::None || edit.secret || edit.replaced.empty();
  if (needsNone) return;
  const auto before = find(edit.replaced);
  if (!before || !keepsSecret(before->connection, edit.connection)) return;
  SecretStore::Found found = keptSecret(*before);
  if (!found.problem.empty()) throw RuntimeFailure("The secret cannot be had: " + found.problem);
  edit.secret = std::move(found.secret);
}

/// @returns why it is not kept there.
std::string ConnectionBook::Parts::keepOnDesktop(const ConnectionEdit& edit, StoredConnection& stored) const {
  if (!settings.desktop) return "there is no secret store of the desktop";
  stored.secretKey = newKey();
  std::string why =
      settings.desktop->keep(stored.secretKey, "VLClientUI: " + edit.connection.name, *edit.secret);
  if (!why.empty()) stored.secretKey.clear();
  return why;
}

/// @returns the words for a person.
std::string ConnectionBook::Parts::placeSecret(const ConnectionEdit& edit, StoredConnection& stored) const {
  Connection& connection = stored.connection;
  const std::string word = secretWord(connection);
  if (edit.keeping == SecretKeeping::Session) {
    connection.kept = SecretPlace::Session;
    return "The " + word + " is kept for this session only.";
  }
  std::string why;
  if (edit.keeping != SecretKeeping::File) {
    why = keepOnDesktop(edit, stored);
    // Who gives up has not said that a file will do.
    if (!why.empty() && WaitScope::isGivenUp()) throw RuntimeFailure(notSaved);
    connection.kept = SecretPlace::Desktop;
    if (why.empty()) return "The " + word + " is kept in the secret store of the desktop.";
    if (edit.keeping == SecretKeeping::Desktop)
      throw RuntimeFailure("The " + word + " cannot be kept: " + why);
  }
  connection.kept = SecretPlace::File;
  stored.secret = *edit.secret;
  return "The " + word + " is kept in the file '" + file.file().path().string() +
         "', which only you can read" + (why.empty() ? "" : ", since " + why) + ".";
}

void ConnectionBook::Parts::write(const ConnectionEdit& edit, const StoredConnection& stored) const {
  file.change([&](Connections& connections) {
    const auto place = named(connections, edit.replaced);
    const auto same = named(connections, stored.connection.name);
    if (!edit.replaced.empty() && place == connections.end())
      throw RuntimeFailure("There is no connection '" + edit.replaced + "' any more");
    if (same != connections.end() && same != place)
      throw RuntimeFailure("There is a connection '" + same->connection.name + "' already");
    if (place != connections.end()) connections.erase(place);
    connections.push_back(stored);
    std::ranges::sort(connections, {}, [](const StoredConnection& one) { return one.connection.name; });
  });
}

/// @returns why it may still be there.
std::string ConnectionBook::Parts::dropKey(const std::string& key) const {
  return key.empty() || !settings.desktop ? "" : settings.desktop->forget(key);
}

ConnectionBook::ConnectionBook(Settings settings) : parts_(std::make_unique<Parts>(std::move(settings))) {}

ConnectionBook::~ConnectionBook() = default;

// Never destroyed: a thread that was left alone may still wait for the desktop when the program ends.
ConnectionBook& ConnectionBook::shared() {
  static auto& book = *new ConnectionBook({connectionsFolder(), desktopSecretStore(desktopSecretLibrary)});
  return book;
}

std::vector<Connection> ConnectionBook::connections() const {
  std::vector<Connection> found;
  for (StoredConnection& stored : parts_->all()) found.push_back(std::move(stored.connection));
  return found;
}

std::optional<Connection> ConnectionBook::find(const std::string& name) const {
  auto stored = parts_->find(name);
  return stored ? std::optional(std::move(stored->connection)) : std::nullopt;
}

std::filesystem::path ConnectionBook::file() const { return parts_->file.file().path(); }

std::string ConnectionBook::save(const ConnectionEdit& told) {
  if (parts_->settings.folder.empty()) throw RuntimeFailure("Neither XDG_DATA_HOME nor HOME names a folder");
  ConnectionEdit edit = withoutAddressSecrets(told);
  const auto before = edit.replaced.empty() ? std::nullopt : parts_->find(edit.replaced);
  if (const std::string problem = problemOf(edit.connection); !problem.empty()) throw RuntimeFailure(problem);
  parts_->completeSecret(edit);
  const bool mayLack = edit.keeping == SecretKeeping::Session && !edit.secret;
  const std::string problem = mayLack ? "" : problemOfSecret(edit.connection, edit.secret.value_or(""));
  if (!problem.empty()) throw RuntimeFailure(problem);
  StoredConnection stored{edit.connection, "", ""};
  const bool hasSecret = edit.connection.signIn != SignIn::None;
  std::string words = hasSecret ? parts_->placeSecret(edit, stored) : "";
  try {
    parts_->write(edit, stored);
  } catch (...) {
    parts_->dropKey(stored.secretKey);
    throw;
  }
  if (const std::string why = before ? parts_->dropKey(before->secretKey) : ""; !why.empty())
    words += (words.empty() ? "" : " ") + (std::string("Its former secret") + stillOnDesktop + why);
  const std::lock_guard lock(parts_->mutex);
  if (before) parts_->ofSession.erase(before->connection.name);
  if (stored.connection.kept == SecretPlace::Session && edit.secret)
    parts_->ofSession[stored.connection.name] = *edit.secret;
  parts_->isRead = false;
  parts_->refresh();
  return words;
}

std::string ConnectionBook::remove(const std::string& name) {
  std::string key;
  parts_->file.change([&](Connections& connections) {
    const auto found = named(connections, name);
    if (found == connections.end()) throw RuntimeFailure("There is no connection '" + name + "'");
    key = found->secretKey;
    connections.erase(found);
  });
  const std::lock_guard lock(parts_->mutex);
  std::erase_if(parts_->ofSession, [&](const auto& entry) { return isSameName(entry.first, name); });
  parts_->isRead = false;
  parts_->refresh();
  const std::string why = parts_->dropKey(key);
  return why.empty() ? "" : std::string("Its secret") + stillOnDesktop + why;
}

std::string ConnectionBook::problemOfDesktop() const {
  if (!parts_->settings.desktop) return "there is no secret store of the desktop";
  return parts_->settings.desktop->find("VLClientUI-none").problem;
}

std::string ConnectionBook::withoutSecrets(const std::string& typed) {
  TypedText found = withoutTypedSecrets(typed);
  if (found.secret) {
    const SecretScope& scope = found.secret->scope;
    const std::string key = scope.server.scheme + "://" + scope.server.shown() + scope.path;
    parts_->live.put(Origin::Typed, key, std::move(*found.secret));
  }
  return std::move(found.text);
}

std::string ConnectionBook::addressOf(const std::string& serverText) const {
  const std::lock_guard lock(parts_->mutex);
  parts_->refresh();
  const auto first = serverText.find_first_not_of(" \t");
  if (first == std::string::npos) return serverText;
  const auto found =
      named(parts_->known, serverText.substr(first, serverText.find_last_not_of(" \t") + 1 - first));
  return found == parts_->known.end() ? serverText : found->connection.address;
}

std::string ConnectionBook::addressOfReference(const std::string& serverAndName) const {
  const std::size_t slash = std::min(serverAndName.find('/'), serverAndName.size());
  return addressOf(serverAndName.substr(0, slash)) + serverAndName.substr(slash);
}

void ConnectionBook::prepare(const Server& server, const std::string& path) {
  const auto lacking = parts_->lacking(server, path);
  if (!lacking) return;
  parts_->refuseWithinQuestion(lacking->connection);
  const Turn turn(parts_->bringing, server.shown(), parts_->patienceNow());
  if (turn.isTooLate()) {
    throw RuntimeFailure("The " + secretWord(lacking->connection) + " of the connection '" +
                         lacking->connection.name +
                         "' is not at hand, and another thread has asked for it, without an answer, for "
                         "longer than requests wait. A question about a secret cannot wait for requests "
                         "that need it");
  }
  if (!turn.isMine()) return;  // given up: the request is too
  while (const auto stored = parts_->lacking(server, path)) parts_->bring(*stored);
}

Credentials ConnectionBook::credentials(const Server& server, const std::string& path) const {
  return parts_->live.find(server, path);
}

void ConnectionBook::setQuestion(Question question, std::optional<std::chrono::milliseconds> patience) {
  const std::lock_guard lock(parts_->mutex);
  parts_->question = std::move(question);
  parts_->patience = patience;
  parts_->asked.clear();
}

ConnectionBook::Trial::Trial(ConnectionBook& book, const Connection& connection,
                             const std::optional<std::string>& secret)
    : book_(book) {
  static std::atomic<int> last{0};
  number_ = ++last;
  ConnectionEdit edit{connection, secret, SecretKeeping::Best, connection.name};
  book.parts_->completeSecret(edit);
  book.parts_->live.put(Origin::Trial, std::to_string(number_),
                        sentSecret(connection, edit.secret.value_or("")));
}

ConnectionBook::Trial::~Trial() { book_.parts_->live.drop(Origin::Trial, std::to_string(number_)); }

}  // namespace vlclientui::client
