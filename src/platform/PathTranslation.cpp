#include "platform/PathTranslation.h"

#include <cctype>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::platform {
namespace {

using Components = std::vector<std::string_view>;

enum class TrailingBlanks { Keep, Drop };

bool isSeparator(char character) { return character == '\\' || character == '/'; }

bool hasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

std::string_view withoutTrailingBlanks(std::string_view component) {
  return component.substr(0, component.find_last_not_of(' ') + 1);
}

Components split(std::string_view path, std::string_view separators, TrailingBlanks blanks) {
  Components components;
  while (!path.empty()) {
    const std::size_t end = path.find_first_of(separators);
    std::string_view component = path.substr(0, end);
    if (blanks == TrailingBlanks::Drop) component = withoutTrailingBlanks(component);
    if (!component.empty()) components.push_back(component);
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
  }
  return components;
}

Components resolved(const Components& components) {
  Components result;
  for (std::string_view component : components) {
    if (component == ".") continue;
    if (component != "..") {
      result.push_back(component);
    } else if (!result.empty()) {
      result.pop_back();
    }
  }
  return result;
}

std::string join(const Components& components, char separator) {
  std::string result;
  for (std::string_view component : components) {
    if (!result.empty()) result += separator;
    result += component;
  }
  return result;
}

/// Trailing components of blanks do not count, so a separator before them ends the path.
bool endsInSeparator(std::string_view path) {
  const std::string_view bare = withoutTrailingBlanks(path);
  return !bare.empty() && isSeparator(bare.back());
}

std::string below(const std::string& root, std::string_view rest) {
  const std::string inner = join(resolved(split(rest, "\\/", TrailingBlanks::Drop)), '/');
  if (inner.empty()) return root + "/";
  return root + "/" + inner + (endsInSeparator(rest) ? "/" : "");
}

std::string withSlashes(std::string_view path) {
  const bool isHost = path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1]);
  std::string result = (isHost ? "//" : "") + join(split(path, "\\/", TrailingBlanks::Drop), '/');
  if (!result.empty() && result.back() != '/' && endsInSeparator(path)) result += '/';
  return result;
}

void refuseNul(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) throw RuntimeFailure("A path holds a NUL character");
}

void refuseWithoutLogicForm(const Components& components) {
  for (std::string_view component : components) {
    if (component.find('\\') != std::string_view::npos || component.back() == ' ') {
      throw RuntimeFailure("The name '" + std::string(component) +
                           "' cannot be used: it holds a backslash or ends in a blank");
    }
  }
}

/// Whether the path is the folder or lies below it.
bool liesBelow(const Components& folder, const Components& path) {
  return path.size() >= folder.size() && std::equal(folder.begin(), folder.end(), path.begin());
}

}  // namespace

PathTranslation::PathTranslation(std::string_view homeFolder) : home_(homeFolder) {
  while (!home_.empty() && home_.back() == '/') home_.pop_back();
}

PathTranslation PathTranslation::ofUser() {
  if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') return PathTranslation(home);
  if (const passwd* user = getpwuid(getuid()); user != nullptr) return PathTranslation(user->pw_dir);
  return PathTranslation("");
}

std::string PathTranslation::toNative(std::string_view path) const {
  refuseNul(path);
  if (path.empty() || path[0] == '/') return std::string(path);
  if (hasDrive(path)) {
    const int drive = std::toupper(static_cast<unsigned char>(path[0]));
    if (drive == 'C') return below(home_, path.substr(2));
    if (drive == 'Z') return below("", path.substr(2));
    throw RuntimeFailure("There is no drive '" + std::string(path.substr(0, 2)) + "'");
  }
  const bool fromDriveRoot = path[0] == '\\' && (path.size() == 1 || !isSeparator(path[1]));
  return fromDriveRoot ? below(home_, path) : withSlashes(path);
}

std::string PathTranslation::toLogic(std::string_view nativePath) const {
  refuseNul(nativePath);
  if (nativePath.empty() || hasDrive(nativePath) || nativePath[0] == '\\') return std::string(nativePath);
  Components components = split(nativePath, "/", TrailingBlanks::Keep);
  refuseWithoutLogicForm(components);
  std::string prefix;
  if (nativePath.substr(0, 2) == "//") {
    prefix = "\\\\";
  } else if (nativePath[0] == '/') {
    components = resolved(components);
    const Components home = split(home_, "/", TrailingBlanks::Keep);
    const bool onDriveC = liesBelow(home, components);
    prefix = onDriveC ? "C:\\" : "Z:\\";
    if (onDriveC) components.erase(components.begin(), components.begin() + std::ssize(home));
  }
  const bool keepsSeparator = nativePath.back() == '/' && !components.empty();
  return prefix + join(components, '\\') + (keepsSeparator ? "\\" : "");
}

}  // namespace vlclientui::platform
