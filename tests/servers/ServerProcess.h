#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace vlclientui::test {

/// The Python of the system, where there is one: others first find out which of them they are.
[[nodiscard]] std::string pythonProgram();

/// A server of a test: a program that writes "ready PORT" to its standard output when it may be asked, and
/// listens on loopback. It has a process group of its own, which ends with this object, whatever its
/// processes do then; it is told to end, too, when the thread that made this object ends, so that it survives
/// no test program.
class ServerProcess {
 public:
  /// Starts words[0] with the rest as arguments, and waits for it to be ready.
  /// @throws std::runtime_error when it ends before or takes longer than half a minute.
  explicit ServerProcess(const std::vector<std::string>& words);
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  [[nodiscard]] int port() const { return port_; }
  /// "http://127.0.0.1:PORT", without a separator at its end.
  [[nodiscard]] std::string address() const;
  /// The process group, which is the process id of its leader as well.
  [[nodiscard]] pid_t group() const { return group_; }

 private:
  void readPort(int descriptor);
  void end() const;

  pid_t group_ = 0;
  int port_ = 0;
};

/// Whether a process group has members; those that only wait to be noticed count.
[[nodiscard]] bool hasMembers(pid_t group);

}  // namespace vlclientui::test
