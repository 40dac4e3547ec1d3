#pragma once

#include <cstdint>
#include <string>

namespace vlclientui::test {

/// What this process holds of the machine.
struct ProcessUse {
  std::int64_t allocations = 0;  ///< that were not given back
  std::int64_t kilobytes = 0;    ///< of memory in use
  std::int64_t handles = 0;      ///< open files
  std::int64_t threads = 0;

  [[nodiscard]] static ProcessUse now();
};

/// In words, for a line of output.
[[nodiscard]] std::string inWords(const ProcessUse& use);

}  // namespace vlclientui::test
