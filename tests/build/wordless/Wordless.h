#pragma once

namespace wordless {

/// Has words, and a member that has none.
struct Half {
  int told = 0;  ///< for the test
  int untold = 0;
};

/// One of its values has no words.
enum class State {
  Said,  ///< for the test
  Unsaid
};

}  // namespace wordless
