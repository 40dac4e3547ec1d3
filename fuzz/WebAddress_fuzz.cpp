// Input: any text, as an address, a reference inside a document, a message with addresses in it, and a
// Retry-After. Whatever it is, a password and a key that stand where they belong are not shown.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "client/transport/Address.h"
#include "client/transport/Retries.h"
#include "client/transport/Secrets.h"

namespace {

using namespace vlclientui::client;

const std::string secret = "5eCrEt";

void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", property);
  std::abort();
}

bool isHidden(const std::string& shown) { return shown.find(secret) == std::string::npos; }

void checkSecrets(const std::string& text) {
  const std::string shown = withoutSecrets(text);
  require(withoutSecrets(shown) == shown, "what is shown has nothing left to hide");
  if (!isHidden(text)) return;
  require(isHidden(withoutSecrets("https://ann:" + secret + "@example.org/" + text)),
          "a password is not shown");
  require(isHidden(withoutSecrets("https://example.org/?token=" + secret + "&" + text)),
          "a key is not shown");
  require(isHidden(textWithoutSecrets(text + " https://example.org/?token=" + secret)), "nor in a message");
}

void checkAddress(const std::string& text) {
  const auto address = parsedAddress(text);
  if (!address) return;
  const auto again = parsedAddress(address->text());
  require(again && again->server == address->server, "an address that is written leads to the same server");
  require(!again->hasUser, "an address is written without its user");
}

void checkReference(const std::string& text) {
  const auto resolved = resolvedAddress("https://example.org/a/b.json?c=d", text);
  if (!resolved) return;
  require(resolved->starts_with("http://") || resolved->starts_with("https://"),
          "a reference leads to the web");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  checkSecrets(text);
  checkAddress(text);
  checkAddress("http://" + text);
  checkReference(text);
  const auto pause = toldPause(text, std::chrono::system_clock::now());
  require(!pause || pause->count() >= 0, "a pause is not negative");
  return 0;
}
