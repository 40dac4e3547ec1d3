#include "client/transport/Address.h"

#include <memory>
#include <vector>

#include <curl/curl.h>

#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

constexpr int plainPort = 80;
constexpr int securedPort = 443;

struct UrlCloser {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, UrlCloser>;

std::string part(CURLU* url, CURLUPart which, unsigned int flags = 0) {
  char* text = nullptr;
  if (curl_url_get(url, which, &text, flags) != CURLUE_OK) return {};
  std::string copy(text);
  curl_free(text);
  return copy;
}

bool isWeb(const std::string& scheme) { return scheme == "http" || scheme == "https"; }

int usualPort(const std::string& scheme) { return scheme == "https" ? securedPort : plainPort; }

// libcurl takes blanks and control characters in places where no server wants them.
bool isPrintable(std::string_view text) {
  for (const char letter : text) {
    if (letter == ' ' || letter == '\x7f' || (letter >= 0 && letter < ' ')) return false;
  }
  return !text.empty();
}

// From behind the "//" to the path.
std::string_view placeOf(std::string_view text) {
  const std::size_t start = text.find("://") + 3;
  return text.substr(start, text.find_first_of("/?#", start) - start);
}

// libcurl decodes a host, and "%40" would make a user of it when it is written again. No host needs that; the
// "%" in brackets names a network card.
bool isCoded(std::string_view place) {
  const std::string_view host = place.substr(place.rfind('@') + 1);
  return !host.starts_with('[') && host.find('%') != std::string_view::npos;
}

Url parsed(const std::string& text) {
  Url url(curl_url());
  const std::size_t scheme = text.find("://");
  // libcurl forgives a missing server and takes the first folder for it.
  if (!url || !isPrintable(text) || scheme == std::string::npos || text.find(':') != scheme ||
      text.find('/', scheme + 3) == scheme + 3) {
    return nullptr;
  }
  if (curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK) return nullptr;
  return url;
}

bool staysPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~';
}

}  // namespace

std::string Server::shown() const {
  return port == usualPort(scheme) ? host : host + ":" + std::to_string(port);
}

std::string Address::text() const {
  return server.scheme + "://" + server.shown() + path + (query.empty() ? "" : "?" + query);
}

std::optional<Address> parsedAddress(const std::string& text) {
  const Url url = parsed(text);
  if (!url) return std::nullopt;
  Address address;
  address.server.scheme = part(url.get(), CURLUPART_SCHEME);
  address.server.host = smallLetters(part(url.get(), CURLUPART_HOST));
  if (!isWeb(address.server.scheme) || address.server.host.empty() || isCoded(placeOf(text)))
    return std::nullopt;
  address.server.port = std::stoi(part(url.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT));
  address.path = part(url.get(), CURLUPART_PATH);
  address.query = part(url.get(), CURLUPART_QUERY);
  address.hasUser = placeOf(text).find('@') != std::string_view::npos;
  return address;
}

std::optional<std::string> resolvedAddress(const std::string& base, const std::string& reference) {
  const Url url = parsed(base);
  if (!url || !isPrintable(reference)) return std::nullopt;
  if (curl_url_set(url.get(), CURLUPART_URL, reference.c_str(), 0) != CURLUE_OK) return std::nullopt;
  if (!isWeb(part(url.get(), CURLUPART_SCHEME))) return std::nullopt;
  curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);
  return part(url.get(), CURLUPART_URL);
}

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.size());
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (staysPlain(letter)) {
      encoded += letter;
    } else {
      encoded += {'%', digits[code >> 4U], digits[code & 15U]};
    }
  }
  return encoded;
}

std::string percentDecoded(std::string_view text) {
  if (text.empty()) return {};
  int length = 0;
  char* const plain = curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &length);
  if (plain == nullptr) return {};
  std::string copy(plain, static_cast<std::size_t>(length));
  curl_free(plain);
  return copy;
}

std::string withParameter(const std::string& address, std::string_view name, std::string_view value) {
  const std::string bare = address.substr(0, address.find('#'));
  const std::size_t query = bare.find('?');
  const bool isFirst = query == std::string::npos;
  const bool isOpen = isFirst || query + 1 == bare.size() || bare.back() == '&';
  return bare + (isFirst ? "?" : isOpen ? "" : "&") + percentEncoded(name) + "=" + percentEncoded(value);
}

bool isWebAddress(std::string_view text) {
  const std::string scheme = smallLetters(text.substr(0, text.find("//")));
  return (scheme == "http:" || scheme == "https:") && text.size() > scheme.size();
}

std::string fileNameOf(const Address& address) {
  const std::string name = percentDecoded(address.path.substr(address.path.rfind('/') + 1));
  return name.empty() ? address.server.host : name;
}

}  // namespace vlclientui::client
