#include "client/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::test {
namespace {

constexpr uid_t nobody = 65534;

std::string reason(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

void put(const char* file, const std::string& text) { std::ofstream(file) << text; }

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

std::string mountSmallFileSystem(const std::string& folder, const std::string& size) {
  const std::string user = std::to_string(getuid());
  const std::string group = std::to_string(getgid());
  if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return reason("no file systems of one's own");
  put("/proc/self/setgroups", "deny");
  put("/proc/self/uid_map", "0 " + user + " 1");
  put("/proc/self/gid_map", "0 " + group + " 1");
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return reason("no private mounts");
  const std::string options = "size=" + size;
  if (mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) != 0) return reason("no small file system");
  return {};
}

std::string makeReadOnly(const std::string& folder) {
  if (mount("none", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0) return {};
  return reason("no read-only file system");
}

void dropRights() {
  if (geteuid() == 0) static_cast<void>(setresuid(nobody, nobody, nobody) == 0);
}

}  // namespace vlclientui::test
