#include "client/ranges/FileAnswers.h"

#include <string_view>

#include "client/ranges/RemoteFile.h"
#include "client/transport/Address.h"
#include "client/transport/HttpText.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

constexpr int unauthorized = 401;
constexpr int forbidden = 403;
constexpr int notFound = 404;
constexpr int gone = 410;
constexpr int tooManyRequests = 429;
constexpr int firstOfServerFaults = 500;

std::string hostOf(const std::string& address) {
  const auto parsed = parsedAddress(address);
  return parsed ? parsed->server.shown() : "The server";
}

std::string quoted(const std::string& address) { return '"' + withoutSecrets(address) + '"'; }

}  // namespace

bool isNoFile(int status) { return status == notFound || status == gone; }

bool isPassing(int status) { return status == tooManyRequests || status >= firstOfServerFaults; }

// "bytes 0-65535/1048576"
std::optional<std::uint64_t> wholeSizeOf(const HttpAnswer& part) {
  const std::string text = part.header("Content-Range");
  const std::size_t slash = text.rfind('/');
  if (slash == std::string::npos) return std::nullopt;
  const auto size = wholeNumber(withoutBlanks(std::string_view(text).substr(slash + 1)));
  return size && *size > 0 ? size : std::nullopt;
}

std::string refusalText(const HttpAnswer& answer, const std::string& address) {
  if (isNoFile(answer.status)) return hostOf(address) + " has no file " + quoted(address) + ".";
  if (answer.status == unauthorized || answer.status == forbidden)
    return hostOf(address) + " does not let you read " + quoted(address) +
           "; a connection to this address can keep a user or token.";
  return hostOf(address) + " answered " + quoted(address) + " with status " + std::to_string(answer.status) +
         ".";
}

std::string tooLargeWithoutParts(const std::string& address) {
  return hostOf(address) + " sends only the whole file " + quoted(address) + ", which is larger than " +
         std::to_string(RemoteFile::mostWholeBytes >> 20U) + " MB.";
}

std::string wrongPart(const std::string& address) {
  return hostOf(address) + " sent another part of " + quoted(address) + " than was asked for.";
}

std::string emptyFile(const std::string& address) { return "The file " + quoted(address) + " is empty."; }

std::string changedFile(const std::string& address) {
  return "The file " + quoted(address) + " has changed while it was read.";
}

std::string givenUpFile(const std::string& address) {
  return "The file " + quoted(address) + " was given up.";
}

std::string noImage(const std::string& address) {
  return quoted(address) + " is no image of a kind that is read from the web.";
}

}  // namespace vlclientui::client
