#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What a map shows of a service.
struct ServicePicture {
  /// Pixels across; 0 for a picture without pixels.
  int columns = 0;
  /// Pixels down, likewise.
  int rows = 0;
  std::vector<std::uint8_t> rgba;  ///< rows from the top; red, green, blue, alpha (not premultiplied)
  bool isQuick = false;            ///< a fine pass shows more
  std::map<std::string, std::string> missing =
      {};                    ///< what tells a person of sources that cannot be read, by their shown names
  std::string failure = {};  ///< why nothing of it can be drawn; empty when it can
  std::set<std::string> slow = {};  ///< files of which small copies would be of use

  /// Whether it may be worth another try.
  [[nodiscard]] bool isLacking() const { return !missing.empty() || !failure.empty(); }
};

/// What tells a person of sources that cannot be read, as in ServicePicture::missing; empty for none.
[[nodiscard]] inline std::string textOfMissing(const std::map<std::string, std::string>& missing) {
  if (missing.empty()) return {};
  std::string text = missing.begin()->second;
  if (missing.size() == 1) return text;
  if (!text.ends_with('.')) text += ".";
  return text + " Nor can " + std::to_string(missing.size() - 1) + " more.";
}

}  // namespace vlclientui::client
#pragma GCC visibility pop
