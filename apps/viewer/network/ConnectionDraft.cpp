#include "viewer/network/ConnectionDraft.h"

namespace vlclientui::viewer {
namespace {

using client::Connection;
using client::SecretKeeping;
using client::SecretPlace;
using client::SignIn;
using client::TokenPlace;

SecretKeeping keepingOf(SecretPlace place) {
  if (place == SecretPlace::Desktop) return SecretKeeping::Desktop;
  return place == SecretPlace::File ? SecretKeeping::File : SecretKeeping::Session;
}

bool travelsReadable(const Connection& connection) { return connection.address.starts_with("http://"); }

std::string placeWords(const ConnectionDraft& draft, const ConnectionDraft::DesktopProblem& desktop,
                       const std::string& file) {
  const std::string kept = "The " + secretWord(draft.connection) + " is kept ";
  const std::string inFile = "in the file " + file + ", which only you can read";
  if (draft.keeping == SecretKeeping::Session) return kept + "until the viewer ends.";
  if (draft.keeping == SecretKeeping::File) return kept + inFile + ".";
  const bool mayBeFile = draft.keeping == SecretKeeping::Best;
  if (!desktop && mayBeFile)
    return kept + "in the secret store of the desktop if there is one, else " + inFile + ".";
  if (!desktop || desktop->empty()) return kept + "in the secret store of the desktop.";
  return mayBeFile
             ? kept + inFile + ": " + *desktop + "."
             : "The " + secretWord(draft.connection) + " cannot be kept on the desktop: " + *desktop + ".";
}

}  // namespace

ConnectionDraft ConnectionDraft::of(const Connection& present) {
  return {present, "", keepingOf(present.kept), present};
}

void ConnectionDraft::signInWith(SignIn way, TokenPlace place) {
  const auto usualName = [](TokenPlace of) { return of == TokenPlace::Header ? "Authorization" : "token"; };
  if (connection.tokenName == usualName(connection.tokenPlace)) connection.tokenName = usualName(place);
  connection.signIn = way;
  connection.tokenPlace = place;
}

void ConnectionDraft::takeAddress(const std::string& typed) {
  connection.address = typed;
  const auto cleaned = client::withoutAddressSecrets({connection, std::nullopt, keeping, ""});
  // A user alone makes no password of the token that was typed.
  if (!cleaned.secret && client::withoutAddressSecrets(edit()).connection.address == typed) return;
  connection = cleaned.connection;
  if (cleaned.secret) secret = *cleaned.secret;
}

client::ConnectionEdit ConnectionDraft::edit() const {
  const auto given = secret.empty() ? std::nullopt : std::optional(secret);
  return {connection, given, keeping, present ? present->name : ""};
}

bool ConnectionDraft::keepsSecret() const { return present && client::keepsSecret(*present, connection); }

std::string ConnectionDraft::problem() const {
  if (std::string problem = problemOf(connection); !problem.empty()) return problem;
  const bool mayLack = keepsSecret() || keeping == SecretKeeping::Session;
  return secret.empty() && mayLack ? "" : problemOfSecret(connection, secret);
}

std::string ConnectionDraft::words(const DesktopProblem& desktop, const std::string& file) const {
  if (connection.signIn == SignIn::None) return {};
  std::string told = placeWords(*this, desktop, file);
  if (travelsReadable(connection))
    told += " It travels readable for everybody, since the address begins with http://.";
  return told;
}

std::string keptWords(const Connection& connection) {
  if (connection.signIn == SignIn::None) return "-";
  if (connection.kept == SecretPlace::Desktop) return "desktop's secret store";
  return connection.kept == SecretPlace::File ? "file of connections" : "this session only";
}

}  // namespace vlclientui::viewer
