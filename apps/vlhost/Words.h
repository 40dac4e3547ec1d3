#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace vlclientui::vlhost {

/// The command line makes no sense, for the reason that `what` tells.
class Misuse : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The words of a command line, taken one by one. `--option=value` counts as an option and its value.
class Words {
 public:
  explicit Words(const std::vector<std::string>& arguments);

  [[nodiscard]] bool atEnd() const { return next_ == words_.size(); }
  /// @throws Misuse for a value joined to an option that took none.
  std::string take();
  /// The value of the option taken last, joined to it or behind it; nothing at the end, and nothing where the
  /// next word is refused. A joined value is never refused.
  std::optional<std::string> takeValue(bool (*accepts)(const std::string& word));
  /// A value joined to an option of several values may hold them all, with blanks between.
  void splitJoinedValue();
  /// A file whose name begins with a dash can be given as "./-name". @throws Misuse when there is none.
  std::string takeFile(const std::string& option);

 private:
  struct Word {
    std::string text;
    bool isJoined = false;
  };

  /// Of a joined value that nobody took.
  [[nodiscard]] Misuse surplus() const;

  std::vector<Word> words_;
  std::size_t next_ = 0;
};

}  // namespace vlclientui::vlhost
