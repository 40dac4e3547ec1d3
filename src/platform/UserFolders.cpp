#include "platform/UserFolders.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "platform/WholeFile.h"

namespace vlclientui::platform {
namespace {

bool isAbsolute(std::string_view path) { return path.starts_with('/'); }

std::string withoutTrailingSeparator(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// The XDG base directories must be absolute; relative ones are ignored.
std::optional<std::string> absoluteVariable(const Environment& environment, const std::string& name) {
  std::optional<std::string> value = environment(name);
  if (!value || !isAbsolute(*value)) return std::nullopt;
  return withoutTrailingSeparator(*value);
}

std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '\\' && index + 1 < text.size()) ++index;
    result += text[index];
  }
  return result;
}

/// The value of a line `NAME="$HOME/x"` or `NAME="/x"`.
std::optional<std::string> valueOfLine(std::string_view line, const std::string& name,
                                       const std::string& home) {
  const std::string start = name + "=\"";
  line = line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
  if (!line.starts_with(start) || line.rfind('"') < start.size()) return std::nullopt;
  std::string value = unescaped(line.substr(start.size(), line.rfind('"') - start.size()));
  if (value == "$HOME" || value.starts_with("$HOME/")) value.replace(0, 5, home);
  if (!isAbsolute(value)) return std::nullopt;
  return withoutTrailingSeparator(value);
}

std::optional<std::string> userDirectory(const std::string& name, const std::string& home,
                                         const Environment& environment) {
  const std::string config = absoluteVariable(environment, "XDG_CONFIG_HOME").value_or(home + "/.config");
  std::istringstream lines(readWholeFile(config + "/user-dirs.dirs").value_or(""));
  std::optional<std::string> result;
  for (std::string line; std::getline(lines, line);) {
    if (auto value = valueOfLine(line, name, home)) result = std::move(value);
  }
  return result;
}

std::string namedFolder(const std::string& variable, const std::string& fallback, const std::string& home,
                        const Environment& environment) {
  if (auto value = absoluteVariable(environment, variable)) return *value;
  if (auto value = userDirectory(variable, home, environment)) return *value;
  std::error_code error;
  const std::string usual = home + "/" + fallback;
  return std::filesystem::is_directory(usual, error) ? usual : home;
}

}  // namespace

std::string documentsFolder(const std::string& home, const Environment& environment) {
  return namedFolder("XDG_DOCUMENTS_DIR", "Documents", home, environment);
}

std::string desktopFolder(const std::string& home, const Environment& environment) {
  return namedFolder("XDG_DESKTOP_DIR", "Desktop", home, environment);
}

std::string dataFolder(const std::string& home, const Environment& environment) {
  return absoluteVariable(environment, "XDG_DATA_HOME").value_or(home + "/.local/share");
}

}  // namespace vlclientui::platform
