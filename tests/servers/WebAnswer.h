#pragma once

#include <string>

namespace vlclientui::test {

/// What a server answers, seen by a plain client that shares nothing with the one under test.
struct WebAnswer {
  long status = 0;  ///< 0 where nobody answered
  std::string type;
  std::string body;
};

/// @param range as "0-99", for these bytes only.
[[nodiscard]] WebAnswer fetchPlainly(const std::string& address, const std::string& range = {});

}  // namespace vlclientui::test
