#include "contracts/AddressUser.h"

#include <algorithm>

namespace vlclientui {
namespace {

bool isPort(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
}

}  // namespace

std::size_t endOfAddressUser(std::string_view rest) {
  const std::size_t serverEnd = std::min(rest.find_first_of("/?#"), rest.size());
  const std::string_view server = rest.substr(0, serverEnd);
  const std::size_t sign = server.rfind('@');
  if (sign != std::string_view::npos) return sign + 1;
  const std::size_t colon = server.find(':');
  const bool isServer =
      colon == std::string_view::npos || server.front() == '[' || isPort(server.substr(colon + 1));
  const std::size_t later = rest.rfind('@');
  return isServer || later == std::string_view::npos ? 0 : later + 1;
}

}  // namespace vlclientui
