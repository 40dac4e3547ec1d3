#include "client/catalogue/CatalogueNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "client/raster/NameMark.h"
#include "client/raster/Text.h"
#include "contracts/Utf8.h"
#include "contracts/XmlCharacters.h"
#include "documents/TextCase.h"

namespace vlclientui::client {
namespace {

constexpr char32_t singleLeftQuote = 0x2039;
constexpr std::size_t markDigits = 6;
constexpr std::size_t mostDigits = 16;

// Rows of these names are messages, which nobody can pick.
constexpr std::array<std::string_view, 2> messageRows = {"(empty)", "(Server not found)"};

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

// A byte that is no text counts as a character that no name has.
std::u32string codePointsOf(std::string_view text) {
  constexpr char32_t replacement = 0xFFFD;
  std::u32string points;
  while (!text.empty()) {
    const Utf8Character character = firstUtf8Character(text);
    points += character.length == 0 ? replacement : character.code;
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return points;
}

// What the list makes "_" of in the names of its elements.
bool isReplacedByTheList(char32_t c) {
  constexpr std::u32string_view replaced = U"[]()<>+";
  return replaced.find(c) != std::u32string_view::npos || c == singleLeftQuote;
}

// Blanks vanish in the list's element names; at an end of the name they would get lost in the reference. A
// digit in front gets a "_" of the list.
bool isCarried(const std::u32string& name, std::size_t index) {
  const char32_t c = name[index];
  const bool isFirst = index == 0;
  const bool isLast = index + 1 == name.size();
  if (isReplacedByTheList(c)) return true;
  if (c == U' ') return !isFirst && !isLast;
  const bool isAsciiDigit = c >= U'0' && c <= U'9';
  return isFirst ? startsXmlName(c) || isAsciiDigit : continuesXmlName(c);
}

// Most names: nothing of them is replaced, and no message is called so.
bool isCarriedAsItIs(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto isPlain = [&](char c) {
    return isLetter(c) || c == '_' || c == '-' || c == '.' || c == ' ' || (c >= '0' && c <= '9');
  };
  return !name.empty() && isLetter(name.front()) && name.back() != ' ' && std::ranges::all_of(name, isPlain);
}

// Without the mark that tells it from others of the same name.
std::string unmarked(std::string_view name) {
  const std::size_t end = name.rfind('_');
  if (end == std::string_view::npos || name.size() - end - 1 < markDigits) return std::string(name);
  const bool isMark = name.find_first_not_of("0123456789abcdef", end + 1) == std::string_view::npos;
  return std::string(isMark ? name.substr(0, end) : name);
}

class Naming {
 public:
  explicit Naming(const std::vector<Sibling>& siblings) : siblings_(siblings) {
    for (const Sibling& sibling : siblings_) keys_.push_back(nameKey(sibling.name));
    for (const std::string& key : keys_) ++bearers_[key];
  }

  std::vector<CatalogueName> run() {
    for (std::size_t i = 0; i < siblings_.size(); ++i) {
      // Files that would share a name, or have that of a folder, keep their extensions.
      const bool isAlone = bearers_.at(keys_[i]) == 1;
      const std::string& real = isAlone ? siblings_[i].name : siblings_[i].wholeName;
      names_.push_back({carriedName(real), real, siblings_[i].name});
      if (!isAlone) keys_[i] = nameKey(real);
    }
    for (const auto& [key, members] : sharedKeys()) tellApart(members);
    return std::move(names_);
  }

 private:
  // Takes all keys; who shares one, by the key.
  std::map<std::string, std::vector<std::size_t>> sharedKeys() {
    for (const std::string& key : keys_) {
      if (!taken_.insert(key).second) shared_.insert(key);
    }
    std::map<std::string, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < keys_.size() && !shared_.empty(); ++i) {
      if (shared_.contains(keys_[i])) groups[keys_[i]].push_back(i);
    }
    return groups;
  }

  // The one whose name is its own keeps it.
  void tellApart(const std::vector<std::size_t>& members) {
    const auto isOwn = [this](std::size_t i) { return names_[i].shown == names_[i].real; };
    const bool oneKeepsIt = std::ranges::count_if(members, isOwn) == 1;
    for (const std::size_t i : members) {
      if (!oneKeepsIt || !isOwn(i)) names_[i].shown = marked(i);
    }
  }

  std::string marked(std::size_t i) {
    std::string name;
    for (std::size_t digits = markDigits; digits <= mostDigits; ++digits) {
      name = names_[i].shown + '_' + nameMark(siblings_[i].wholeName, digits);
      if (taken_.insert(nameKey(name)).second) break;
    }
    return name;
  }

  const std::vector<Sibling>& siblings_;
  std::vector<std::string> keys_;  ///< of the siblings' real names; first of their names
  std::unordered_map<std::string, int> bearers_;
  std::vector<CatalogueName> names_;
  std::unordered_set<std::string> taken_;
  std::unordered_set<std::string> shared_;
};

std::array<std::string, 2> keysOf(const Sibling& sibling) {
  return {nameKey(sibling.name), nameKey(sibling.wholeName)};
}

}  // namespace

bool isTextName(std::string_view name) {
  // No document has a place for these two.
  const auto holds = [name](std::string_view c) { return name.find(c) != std::string_view::npos; };
  return isUtf8(name) && std::ranges::none_of(name, isControl) && !holds("\uFFFE") && !holds("\uFFFF");
}

std::string carriedName(std::string_view name) {
  if (isCarriedAsItIs(name)) return std::string(name);
  const std::u32string points = codePointsOf(name);
  std::string carried;
  for (std::size_t i = 0; i < points.size(); ++i)
    appendUtf8(carried, isCarried(points, i) ? points[i] : U'_');
  if (std::ranges::find(messageRows, carried) != messageRows.end()) carried.front() = '_';
  return carried.empty() ? "_" : carried;
}

std::string folderOfName(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? std::string() : name.substr(0, slash);
}

std::string nameInFolder(const std::string& folder, const std::string& leaf) {
  return folder.empty() ? leaf : folder + '/' + leaf;
}

std::string nameKey(std::string_view name) { return lowerCased(carriedName(name)); }

std::vector<CatalogueName> nameSiblings(const std::vector<Sibling>& siblings) {
  return Naming(siblings).run();
}

std::vector<std::size_t> siblingsConcerned(const std::vector<Sibling>& siblings, std::string_view name) {
  std::set<std::string> keys = {nameKey(name), nameKey(unmarked(name))};
  std::vector<bool> isConcerned(siblings.size(), false);
  for (bool grows = true; grows;) {
    grows = false;
    for (std::size_t i = 0; i < siblings.size(); ++i) {
      const auto own = keysOf(siblings[i]);
      const bool meets = std::ranges::any_of(own, [&](const auto& key) { return keys.contains(key); });
      if (isConcerned[i] || !meets) continue;
      isConcerned[i] = true;
      keys.insert(own.begin(), own.end());
      grows = true;
    }
  }
  std::vector<std::size_t> concerned;
  for (std::size_t i = 0; i < siblings.size(); ++i) {
    if (isConcerned[i]) concerned.push_back(i);
  }
  return concerned;
}

}  // namespace vlclientui::client
