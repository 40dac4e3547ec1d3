#include "servers/ServerProcess.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto patienceToStart = 30s;
constexpr auto patienceToEnd = 2s;
constexpr auto step = 5ms;

// All that a child may do before it becomes another program: no memory is asked for, no lock is taken.
[[noreturn]] void become(const std::vector<char*>& words, int output, pid_t parent) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(127);
  dup2(output, STDOUT_FILENO);
  execvp(words[0], words.data());
  _exit(127);
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

template <class Question>
bool holdsWithin(Clock::duration patience, const Question& question) {
  const auto limit = Clock::now() + patience;
  while (!question()) {
    if (Clock::now() > limit) return false;
    std::this_thread::sleep_for(step);
  }
  return true;
}

// One line; what came so far when the other end closes or the time is over.
std::string readLine(int descriptor) {
  std::string line;
  const auto limit = Clock::now() + patienceToStart;
  while (line.empty() || line.back() != '\n') {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now()).count();
    pollfd waited{descriptor, POLLIN, 0};
    char next = 0;
    if (left <= 0 || poll(&waited, 1, static_cast<int>(left)) <= 0) break;
    if (read(descriptor, &next, 1) != 1) break;
    line += next;
  }
  return line;
}

bool hasEnded(pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; }

}  // namespace

std::string pythonProgram() {
  const char* ofTheSystem = "/usr/bin/python3";
  return access(ofTheSystem, X_OK) == 0 ? ofTheSystem : "python3";
}

bool hasMembers(pid_t group) { return kill(-group, 0) == 0 || errno != ESRCH; }

ServerProcess::ServerProcess(const std::vector<std::string>& words) {
  std::vector<std::string> copies = words;
  const std::vector<char*> pointers = pointersTo(copies);
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a server");
  const pid_t parent = getpid();
  group_ = fork();
  if (group_ == 0) become(pointers, ends[1], parent);
  close(ends[1]);
  if (group_ > 0) readPort(ends[0]);
  close(ends[0]);
  if (port_ != 0) return;
  end();
  throw std::runtime_error("the server " + words.back() + " did not start");
}

ServerProcess::~ServerProcess() { end(); }

std::string ServerProcess::address() const { return "http://127.0.0.1:" + std::to_string(port_); }

void ServerProcess::readPort(int descriptor) {
  // The child does the same; whoever comes first.
  setpgid(group_, group_);
  if (std::sscanf(readLine(descriptor).c_str(), "ready %d", &port_) != 1) port_ = 0;
}

// First kindly, so that the server may clear away what it wrote.
void ServerProcess::end() const {
  if (group_ <= 0) return;
  kill(group_, SIGTERM);
  const bool isOver = holdsWithin(patienceToEnd, [this] { return hasEnded(group_); });
  kill(-group_, SIGKILL);
  if (!isOver) waitpid(group_, nullptr, 0);
  holdsWithin(patienceToEnd, [this] { return !hasMembers(group_); });
}

}  // namespace vlclientui::test
