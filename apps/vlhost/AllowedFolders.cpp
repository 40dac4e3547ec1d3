#include "AllowedFolders.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace vlclientui::vlhost {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view option = "--allow-outside";
constexpr const char* variable = "VLCLIENTUI_ALLOW_OUTSIDE";

std::string problemOfFolder(const std::string& folder) {
  std::error_code error;
  if (folder.empty()) return std::string(option) + " wants a folder";
  if (!fs::is_directory(folder, error)) return std::string(option) + ": '" + folder + "' is no folder";
  const bool isParted = fs::absolute(folder).string().find(':') != std::string::npos;
  return isParted ? std::string(option) + ": the name of a folder may hold no colon" : std::string();
}

// Files ask the environment where they may lead, once, when the first is opened.
void allow(const std::string& folder) {
  const char* const before = std::getenv(variable);
  const std::string all = (before == nullptr ? std::string() : std::string(before) + ":");
  setenv(variable, (all + fs::absolute(folder).string()).c_str(), 1);
}

}  // namespace

std::string takeAllowedFolders(std::vector<std::string>& arguments) {
  for (auto word = arguments.begin(); word != arguments.end();) {
    const bool isWhole = *word == option;
    if (!isWhole && !word->starts_with(std::string(option) + "=")) {
      ++word;
      continue;
    }
    const bool hasNext = isWhole && word + 1 != arguments.end();
    const std::string folder = hasNext ? word[1] : isWhole ? "" : word->substr(option.size() + 1);
    if (std::string problem = problemOfFolder(folder); !problem.empty()) return problem;
    allow(folder);
    word = arguments.erase(word, word + (hasNext ? 2 : 1));
  }
  return {};
}

}  // namespace vlclientui::vlhost
