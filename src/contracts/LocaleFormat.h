#pragma once

#include <string>

#pragma GCC visibility push(default)
namespace vlclientui {

/// How the user writes numbers. Pure data, taken from the system port; nothing ever sets a process locale.
struct LocaleFormat {
  std::string decimalSeparator = ".";  ///< one or more characters, UTF-8
  std::string groupSeparator = ",";    ///< between thousands, UTF-8; may be a no-break space or an apostrophe
  std::string currencySymbol = "$";    ///< tolerated before or after a number that is read

  /// Whether numbers are written alike.
  bool operator==(const LocaleFormat&) const = default;
};

}  // namespace vlclientui
#pragma GCC visibility pop
