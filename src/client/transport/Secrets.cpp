#include "client/transport/Secrets.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "client/transport/Address.h"
#include "client/transport/HttpText.h"
#include "contracts/AddressUser.h"
#include "contracts/SecretNames.h"

namespace vlclientui::client {
namespace {

// Around an address inside a text.
constexpr std::string_view wordEnds = " \t\r\n\"'<>`";

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const char small = static_cast<char>(digit | 0x20);
  return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

// "%74oken" is read as "token" by every server.
std::string decoded(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isCoded = text[i] == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0;
    if (isCoded && hexDigit(text[i + 2]) >= 0) {
      plain += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
      i += 2;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

std::string bareName(std::string_view name) {
  std::string bare = smallLetters(decoded(name));
  std::erase_if(bare, [](char letter) { return letter == '-' || letter == '_' || letter == '.'; });
  return bare;
}

std::string shownParameter(std::string_view parameter) {
  const std::size_t equals = parameter.find('=');
  if (equals == std::string_view::npos || !isSecretParameter(parameter.substr(0, equals))) {
    return std::string(parameter);
  }
  return std::string(parameter.substr(0, equals + 1)) + std::string(hiddenSecret);
}

std::string shownQuery(std::string_view query) {
  std::string shown;
  while (!query.empty()) {
    const std::size_t end = std::min(query.find_first_of("&;"), query.size());
    shown += shownParameter(query.substr(0, end));
    if (end < query.size()) shown += query[end];
    query.remove_prefix(std::min(end + 1, query.size()));
  }
  return shown;
}

// Behind all schemes: a reference has one, and the address in it another.
std::size_t startOfServer(std::string_view address) {
  constexpr std::string_view schemeEnd = "://";
  std::size_t start = 0;
  for (std::size_t sign = address.find(schemeEnd); sign != std::string_view::npos;
       sign = address.find(schemeEnd, start)) {
    // What stands in front of the first one may be the path of another program.
    const std::string_view ends = start == 0 ? "?#" : "/?#@";
    if (address.substr(start, sign - start).find_first_of(ends) != std::string_view::npos) break;
    start = sign + schemeEnd.size();
  }
  return start;
}

void takeUser(std::string_view user, TypedSecrets& secrets) {
  const std::size_t colon = std::min(user.find(':'), user.size());
  secrets.user = percentDecoded(user.substr(0, colon));
  secrets.password = percentDecoded(user.substr(std::min(colon + 1, user.size())));
}

/// @returns what of the parameter stays.
std::string_view takeParameter(std::string_view parameter, BehindAddress behind, TypedSecrets& secrets) {
  const std::size_t equals = parameter.find('=');
  if (equals == std::string_view::npos || !isSecretParameter(parameter.substr(0, equals))) return parameter;
  const std::size_t slash = parameter.find('/', equals);
  const bool hasName = behind == BehindAddress::Name && slash != std::string_view::npos;
  const std::size_t end = hasName ? slash : parameter.size();
  const std::string_view value = parameter.substr(equals + 1, end - equals - 1);
  if (!value.empty() && value != hiddenSecret) {
    secrets.parameters.push_back({percentDecoded(parameter.substr(0, equals)), percentDecoded(value)});
  }
  return parameter.substr(end);
}

struct KeptQuery {
  std::string text;  ///< with its "?"
  bool isWhole = true;
};

KeptQuery queryAfterTaking(std::string_view query, BehindAddress behind, TypedSecrets& secrets) {
  KeptQuery kept;
  char separator = '?';
  while (!query.empty()) {
    const std::size_t end = std::min(query.find_first_of("&;"), query.size());
    const std::string_view stays = takeParameter(query.substr(0, end), behind, secrets);
    kept.isWhole = kept.isWhole && stays.size() == end;
    const bool isOfQuery = stays.size() == end;
    if (isOfQuery) kept.text += std::exchange(separator, end < query.size() ? query[end] : '&');
    kept.text += stays;
    query.remove_prefix(std::min(end + 1, query.size()));
  }
  return kept;
}

std::string shownAddress(std::string_view address) {
  const std::size_t start = startOfServer(address);
  std::string_view rest = address.substr(start);
  while (const std::size_t end = endOfAddressUser(rest)) rest.remove_prefix(end);
  rest = rest.substr(0, rest.find('#'));
  const std::size_t query = std::min(rest.find('?'), rest.size());
  std::string shown(address.substr(0, start));
  shown += rest.substr(0, query);
  if (query == rest.size()) return shown;
  return shown + '?' + shownQuery(rest.substr(query + 1));
}

// An address, one without its server ("a.tif?sig=..."), or parameters alone ("se=2030&sig=...").
std::string shownWord(std::string_view word) {
  if (word.find("://") != std::string_view::npos) return withoutSecrets(word);
  const std::size_t query = word.find('?');
  if (query == std::string_view::npos) return shownQuery(word);
  return std::string(word.substr(0, query + 1)) + shownQuery(word.substr(query + 1));
}

// As far as an address is read at once.
TypedSecrets secretsInFront(std::string_view address, BehindAddress behind) {
  TypedSecrets secrets;
  const std::size_t start = startOfServer(address);
  std::string_view rest = address.substr(start);
  if (const std::size_t end = endOfAddressUser(rest)) {
    takeUser(rest.substr(0, end - 1), secrets);
    rest.remove_prefix(end);
  }
  while (const std::size_t end = endOfAddressUser(rest)) rest.remove_prefix(end);
  const std::size_t query = std::min(rest.find('?'), rest.size());
  const std::string_view parameters = rest.substr(std::min(query + 1, rest.size()));
  const KeptQuery kept = queryAfterTaking(parameters, behind, secrets);
  secrets.address = address.substr(0, start);
  secrets.beforeQuery = secrets.address + std::string(rest.substr(0, query));
  secrets.address += kept.isWhole ? rest : rest.substr(0, query);
  if (!kept.isWhole) secrets.address += kept.text;
  return secrets;
}

}  // namespace

bool isSecretParameter(std::string_view name) {
  const std::string bare = bareName(name);
  return std::find(secretNames.begin(), secretNames.end(), bare) != secretNames.end() ||
         std::any_of(secretWords.begin(), secretWords.end(),
                     [&](std::string_view part) { return bare.find(part) != std::string::npos; });
}

std::string withoutSecrets(std::string_view address) {
  std::string shown = shownAddress(address);
  // With a user gone, what stood behind may read as one more scheme with a user of its own.
  for (std::string again = shownAddress(shown); again != shown; again = shownAddress(shown)) {
    shown = std::move(again);
  }
  return shown;
}

TypedSecrets secretsTakenOut(std::string_view address, BehindAddress behind) {
  TypedSecrets secrets = secretsInFront(address, behind);
  // As with what is shown. It signs in with what stands in front.
  for (TypedSecrets again = secretsInFront(secrets.address, behind);
       again.address.size() < secrets.address.size(); again = secretsInFront(secrets.address, behind)) {
    secrets.address = std::move(again.address);
    secrets.beforeQuery = std::move(again.beforeQuery);
  }
  return secrets;
}

std::string textWithoutSecrets(std::string_view text) {
  std::string shown;
  std::size_t sign = text.find("://");
  while (sign != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(wordEnds, sign), text.size());
    const std::size_t before = text.find_last_of(wordEnds, sign);
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    shown += text.substr(0, start);
    shown += withoutSecrets(text.substr(start, end - start));
    text.remove_prefix(end);
    sign = text.find("://");
  }
  return shown + std::string(text);
}

std::string propertyWithoutSecrets(std::string_view name, std::string_view value) {
  // Names may begin with that of their group: "store:token".
  const bool isSecret = isSecretParameter(name) || isSecretParameter(name.substr(name.rfind(':') + 1));
  if (isSecret && !value.empty()) return std::string(hiddenSecret);
  const bool mayHoldSome =
      value.find('=') != std::string_view::npos || value.find("://") != std::string_view::npos;
  if (!mayHoldSome) return std::string(value);
  std::string shown;
  while (!value.empty()) {
    const std::size_t end = std::min(value.find_first_of(wordEnds), value.size());
    if (end > 0) shown += shownWord(value.substr(0, end));
    if (end < value.size()) shown += value[end];
    value.remove_prefix(std::min(end + 1, value.size()));
  }
  return shown;
}

}  // namespace vlclientui::client
