#pragma once

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::test {

/// The number of a process that has ended.
inline pid_t deadProcess() {
  const pid_t gone = fork();
  if (gone == 0) _exit(0);
  waitpid(gone, nullptr, 0);
  return gone;
}

/// Half of a new content for a file, as a process of that name and number would leave it if it were killed.
inline std::filesystem::path leaveHalf(const std::filesystem::path& file, const std::string& who) {
  std::array<char, 65> machine{};
  gethostname(machine.data(), machine.size() - 1);
  std::filesystem::path half =
      file.parent_path() / ("." + file.filename().string() + "." + machine.data() + "-" + who + "-1.new");
  std::ofstream(half) << "half";
  return half;
}

}  // namespace vlclientui::test
