#pragma once

namespace wordless {

/// Has words, and a member that has none.
struct Half {
  int told = 0;  ///< for the test
  int untold = 0;
};

}  // namespace wordless
