#include "platform/HelpLauncher.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <sstream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui::platform {
namespace {

bool isPageCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_' || character == '-';
}

/// Runs between fork and exec, so it may call only async-signal-safe functions.
[[noreturn]] void becomeProgram(char* const* arguments) {
  setsid();
  if (const int nowhere = open("/dev/null", O_RDWR); nowhere >= 0) {
    for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  }
  // The second fork makes the program a child of init: nobody here has to wait for it.
  if (fork() == 0) execvp(arguments[0], arguments);
  _exit(0);
}

}  // namespace

std::optional<std::string> helpPageOf(std::string_view commandText) {
  constexpr std::string_view beforePage = "::/";
  constexpr std::string_view after = ".htm";
  const std::size_t before = commandText.rfind(beforePage);
  if (before == std::string_view::npos || !commandText.ends_with(after)) return std::nullopt;
  commandText.remove_prefix(before + beforePage.size());
  if (commandText.size() <= after.size()) return std::nullopt;
  commandText.remove_suffix(after.size());
  if (!std::all_of(commandText.begin(), commandText.end(), isPageCharacter)) return std::nullopt;
  return std::string(commandText);
}

std::vector<std::string> openerOf(const std::string& file, const Environment& environment) {
  const std::string browsers = environment("BROWSER").value_or("");
  std::istringstream words(browsers.substr(0, browsers.find(':')));
  std::vector<std::string> command;
  bool namesFile = false;
  for (std::string word; words >> word;) {
    if (const std::size_t place = word.find("%s"); place != std::string::npos) {
      word.replace(place, 2, file);
      namesFile = true;
    }
    command.push_back(word);
  }
  if (command.empty()) command.emplace_back("xdg-open");
  if (!namesFile) command.push_back(file);
  return command;
}

void startAlone(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) becomeProgram(arguments.data());
  while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace vlclientui::platform
