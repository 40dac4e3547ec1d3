#include "SecretPrompt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iostream>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "Telling.h"
#include "client/connections/ConnectionBook.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::vlhost {
namespace {

constexpr char interrupt = '\x03';

constexpr std::array<int, 4> endingSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// For the handler, which may run on any thread.
struct {
  int descriptor = -1;
  termios former{};
  std::array<struct sigaction, endingSignals.size()> handlers{};
} asked;

// The handler is gone by then, so the signal ends the program as it always does.
void restoreAndEnd(int signal) {
  tcsetattr(asked.descriptor, TCSANOW, &asked.former);
  raise(signal);
}

/// The terminal of the program, without echo for as long as this lives, and no longer where a signal ends
/// the program meanwhile. One at a time.
class Terminal {
 public:
  Terminal() : descriptor_(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {
    isOpen_ = descriptor_ >= 0 && tcgetattr(descriptor_, &former_) == 0;
    if (!isOpen_) return;
    asked.descriptor = descriptor_;
    asked.former = former_;
    catchSignals();
    // Ctrl+C comes as a letter that ends the line, so that only the question is given up.
    termios silent = former_;
    silent.c_cc[VEOL] = static_cast<cc_t>(interrupt);
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    tcsetattr(descriptor_, TCSAFLUSH, &silent);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (isOpen_) {
      tcsetattr(descriptor_, TCSAFLUSH, &former_);
      for (std::size_t i = 0; i < endingSignals.size(); ++i)
        sigaction(endingSignals[i], &asked.handlers[i], nullptr);
    }
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  [[nodiscard]] bool isOpen() const { return isOpen_; }
  void write(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t written = ::write(descriptor_, text.data(), text.size());
      if (written < 0 && errno != EINTR) return;
      if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  [[nodiscard]] std::string line() const {
    std::string typed;
    char letter = 0;
    for (;;) {
      const ssize_t got = ::read(descriptor_, &letter, 1);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0 || letter == '\n') return typed;
      typed += letter;
      if (letter == interrupt) return typed;
    }
  }

 private:
  // What is ignored, as behind nohup, stays so.
  static void catchSignals() {
    struct sigaction restoring {};
    restoring.sa_handler = restoreAndEnd;
    restoring.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
      sigaction(endingSignals[i], nullptr, &asked.handlers[i]);
      if (asked.handlers[i].sa_handler != SIG_IGN) sigaction(endingSignals[i], &restoring, nullptr);
    }
  }

  int descriptor_;
  bool isOpen_ = false;
  termios former_{};
};

std::string firstLineOf(std::istream& stream) {
  std::string line;
  std::getline(stream, line);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

std::string questionFor(const client::Connection& connection) {
  const std::string whose = connection.signIn == client::SignIn::Password ? " of " + connection.user : "";
  std::string word = secretWord(connection);
  word.front() = connection.signIn == client::SignIn::Password ? 'P' : 'T';
  return terminalText(word + whose + " for '" + connection.name + "' (" + connection.address + "): ");
}

}  // namespace

std::optional<std::string> promptedSecret(const client::Connection& connection) {
  const Terminal terminal;
  if (!terminal.isOpen()) return std::nullopt;
  terminal.write(questionFor(connection));
  std::string typed = terminal.line();
  terminal.write("\n");
  const bool isGivenUp = typed.empty() || typed.find(interrupt) != std::string::npos;
  return isGivenUp ? std::nullopt : std::optional(std::move(typed));
}

std::string secretOfFile(const std::string& file) {
  if (file == "-") return firstLineOf(std::cin);
  std::ifstream stream(file, std::ios::binary);
  std::string line = firstLineOf(stream);
  if (!stream.is_open() || stream.bad())
    throw RuntimeFailure("'" + file + "' cannot be read: " + std::strerror(errno));
  return line;
}

std::optional<std::string> askedSecret(const client::Connection& connection) {
  if (isatty(STDIN_FILENO) != 0) return promptedSecret(connection);
  return secretOfFile("-");
}

void answerQuestionsOfConnections() {
  client::ConnectionBook::shared().setQuestion([](const client::Connection& connection) {
    return isatty(STDIN_FILENO) != 0 ? promptedSecret(connection) : std::nullopt;
  });
}

}  // namespace vlclientui::vlhost
