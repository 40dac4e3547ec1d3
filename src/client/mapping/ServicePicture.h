#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace vlclientui::client {

/// What a map shows of a service.
struct ServicePicture {
  int columns = 0;
  int rows = 0;
  std::vector<std::uint8_t> rgba;  ///< rows from the top; red, green, blue, alpha (not premultiplied)
  bool isQuick = false;            ///< a fine pass shows more
  std::set<std::string> missing;   ///< sources that cannot be read, by their shown names
};

}  // namespace vlclientui::client
