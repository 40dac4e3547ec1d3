#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/Silence.h"

namespace vlclientui::test {

/// The silent ends of the thread since the object was made, as the trace prints them.
class HeardSilence {
 public:
  /// "routine: reason" of each since the last asking.
  [[nodiscard]] std::vector<std::string> take() { return std::exchange(lines_, {}); }

 private:
  std::vector<std::string> lines_;
  SilenceListener listener_{
      [this](const SilentEnd& end) { lines_.push_back(end.routine + ": " + end.reason); }};
};

/// One silent end for tables: what causes it, and the line that is heard, among others.
struct SilentCase {
  std::string line;
  std::function<void()> cause;
};

inline void expectHeard(const std::vector<SilentCase>& cases) {
  for (const SilentCase& one : cases) {
    HeardSilence heard;
    one.cause();
    EXPECT_THAT(heard.take(), testing::Contains(one.line));
  }
}

}  // namespace vlclientui::test
