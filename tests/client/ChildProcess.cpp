#include "client/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::test {
namespace {

constexpr uid_t nobody = 65534;

std::string reason(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> part{};
  for (;;) {
    const ssize_t count = read(descriptor, part.data(), part.size());
    if (count <= 0) return text;
    text.append(part.data(), static_cast<std::size_t>(count));
  }
}

[[noreturn]] void runChild(int descriptor, const std::function<std::string()>& work) {
  const std::string text = work();
  const ssize_t written = write(descriptor, text.data(), text.size());
  _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
}

}  // namespace

ChildResult inChild(const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return {false, reason("no pipe")};
  const pid_t child = fork();
  if (child == 0) runChild(ends[1], work);
  close(ends[1]);
  ChildResult result{false, readAll(ends[0])};
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.isKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  return result;
}

void dropRights() {
  if (geteuid() == 0) static_cast<void>(setresuid(nobody, nobody, nobody) == 0);
}

}  // namespace vlclientui::test
