#include "documents/DecimalText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace vlclientui {

std::optional<double> readDecimal(std::string_view text) {
  constexpr std::string_view whiteSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(whiteSpace);
  if (first == std::string_view::npos) return std::nullopt;
  std::string number(text.substr(first, text.find_last_not_of(whiteSpace) - first + 1));
  std::replace(number.begin(), number.end(), ',', '.');
  double value = 0;
  const char* end = number.data() + number.size();
  const bool hasPlus = number.size() > 1 && number[0] == '+' && number[1] != '-';
  const auto result = std::from_chars(number.data() + (hasPlus ? 1 : 0), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace vlclientui
