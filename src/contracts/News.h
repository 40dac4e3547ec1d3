#pragma once

#include <string>

#pragma GCC visibility push(default)
namespace vlclientui {

/// A toolkit that can tell a person something in passing is one of these too: what came of an act, such as
/// the name of a saved file, in the surroundings of the windows, for a while, never in a box. Paths in it
/// have drives and backslashes, as everywhere in the logic.
class NewsTeller {
 public:
  virtual ~NewsTeller() = default;
  /// @param news one sentence for a person. Returns at once, and raises nothing.
  virtual void tell(const std::string& news) = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
