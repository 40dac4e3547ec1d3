#include "client/ranges/RangeNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

#include "client/transport/Address.h"
#include "contracts/Utf8.h"

namespace vlclientui::client {
namespace {

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// What stands in a path of an address as it is, and means nothing to the raster library.
bool isPlain(char c) {
  constexpr std::string_view plain = "-._~!$&'()*+,;=@";
  return isLetterOrDigit(c) || plain.find(c) != std::string_view::npos;
}

// These have a meaning in addresses, so they stand there for themselves.
bool isOfAddresses(char c) {
  constexpr std::string_view signs = "/?#[]%:";
  return isPlain(c) || signs.find(c) != std::string_view::npos;
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

// A character that an address only has encoded, and a name may show.
bool isShown(char c) { return !isOfAddresses(c) && !isControl(c) && c != '\\' && c != '"'; }

bool isCodeAt(std::string_view text, std::size_t at) {
  return text[at] == '%' && at + 2 < text.size() &&
         std::isxdigit(static_cast<unsigned char>(text[at + 1])) != 0 &&
         std::isxdigit(static_cast<unsigned char>(text[at + 2])) != 0;
}

std::string stepOf(std::string_view segment) {
  const bool isText = isUtf8(percentDecoded(segment));
  std::string step;
  for (std::size_t i = 0; i < segment.size(); ++i) {
    if (isCodeAt(segment, i)) {
      const std::string letter = percentDecoded(segment.substr(i, 3));
      step += isText && isShown(letter.front()) ? letter : "%25" + std::string(segment.substr(i + 1, 2));
      i += 2;
    } else {
      step += isPlain(segment[i]) ? std::string(1, segment[i]) : percentEncoded(segment.substr(i, 1));
    }
  }
  return step;
}

std::string stepsOf(std::string_view path) {
  std::string steps;
  for (;;) {
    const std::size_t slash = path.find('/');
    steps += stepOf(path.substr(0, slash));
    if (slash == std::string_view::npos) return steps;
    steps += '/';
    path.remove_prefix(slash + 1);
  }
}

std::string addressPart(std::string_view steps) {
  std::string part;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const bool isCode = isCodeAt(steps, i);
    const char letter = isCode ? percentDecoded(steps.substr(i, 3)).front() : steps[i];
    const bool isKept = isCode ? isOfAddresses(letter) : isPlain(letter) || letter == '/';
    part += isKept ? std::string(1, letter) : percentEncoded({&letter, 1});
    if (isCode) i += 2;
  }
  return part;
}

}  // namespace

std::string nameOfAddress(const std::string& address) {
  constexpr std::string_view behindScheme = "://";
  const std::string_view text = address;
  const std::size_t scheme = text.find(behindScheme);
  if (scheme == std::string_view::npos) return std::string(rangePrefix) + percentEncoded(text);
  const std::string_view rest = text.substr(scheme + behindScheme.size());
  const std::size_t query = std::min(rest.find('?'), rest.size());
  return std::string(rangePrefix) + address.substr(0, scheme) + '/' + stepsOf(rest.substr(0, query)) +
         percentEncoded(rest.substr(query));
}

std::optional<std::string> addressOfName(std::string_view name) {
  if (!name.starts_with(rangePrefix)) return std::nullopt;
  name.remove_prefix(rangePrefix.size());
  const std::size_t slash = name.find('/');
  if (slash == 0 || slash == std::string_view::npos || slash + 1 == name.size()) return std::nullopt;
  return std::string(name.substr(0, slash)) + "://" + addressPart(name.substr(slash + 1));
}

}  // namespace vlclientui::client
