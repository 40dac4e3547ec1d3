#include "widgets/PathTexts.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <utility>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::widgets {

namespace {

bool isLetter(char character) { return std::isalpha(static_cast<unsigned char>(character)) != 0; }

bool beginsPath(const std::string& text, std::size_t at) {
  if (at + 2 >= text.size() || !isLetter(text[at]) || text[at + 1] != ':' || text[at + 2] != '\\')
    return false;
  return at == 0 || !isLetter(text[at - 1]);
}

std::size_t endOfPath(const std::string& text, std::size_t begin) {
  const std::size_t lineEnd = std::min(text.find_first_of("\r\n", begin), text.size());
  if (begin == 0) return lineEnd;
  const char before = text[begin - 1];
  const char closing = before == '>' ? '<' : before;
  if (closing != '\'' && closing != '"' && closing != '<') return lineEnd;
  return std::min(text.find(closing, begin), lineEnd);
}

// A drive that this machine lacks is shown unchanged.
std::string nativeOrSame(const System& system, const std::string& path) {
  try {
    return system.nativePath(path);
  } catch (const RuntimeFailure&) {
    return path;
  }
}

// "/data/my " is a step on the way to typing "/data/my maps", not a mistake.
std::string logicOrSame(const System& system, const std::string& text) {
  if (!text.starts_with('/')) return text;
  try {
    return system.logicPath(text);
  } catch (const RuntimeFailure&) {
    return text;
  }
}

std::string withNativePaths(const System& system, const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    if (!beginsPath(text, at)) {
      result += text[at++];
      continue;
    }
    const std::size_t end = endOfPath(text, at);
    result += nativeOrSame(system, text.substr(at, end - at));
    at = end;
  }
  return result;
}

}  // namespace

PathTexts pathTextsOf(std::shared_ptr<const System> system) {
  return {[system](const std::string& text) { return withNativePaths(*system, text); },
          [system](const std::string& text) { return logicOrSame(*system, text); }};
}

}  // namespace vlclientui::widgets
