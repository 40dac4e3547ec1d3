#include "client/ranges/WebListing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>

#include <cpl_error.h>
#include <cpl_json.h>

#include "client/transport/Address.h"
#include "client/transport/HttpText.h"
#include "contracts/Utf8.h"

namespace vlclientui::client {
namespace {

constexpr std::string_view blanks = " \t\r\n\f";
// No server takes longer ones.
constexpr std::size_t longestReference = std::size_t{8} << 10U;

std::optional<std::string> namedCharacter(std::string_view name) {
  constexpr auto named = std::to_array<std::pair<std::string_view, std::string_view>>(
      {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}});
  const auto* const found =
      std::ranges::find(named, name, &std::pair<std::string_view, std::string_view>::first);
  return found == named.end() ? std::nullopt : std::optional(std::string(found->second));
}

// "#38" or "#x26"
std::optional<std::string> numberedCharacter(std::string_view name) {
  const bool isHex = name.starts_with("#x") || name.starts_with("#X");
  const std::string digits(name.substr(isHex ? 2 : 1));
  const bool isNumber =
      !digits.empty() && digits.size() < 7 &&
      digits.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789") == std::string::npos;
  if (!isNumber) return std::nullopt;
  const auto code = static_cast<char32_t>(std::stoul(digits, nullptr, isHex ? 16 : 10));
  std::string text;
  if (code > 0 && code <= 0x10FFFF) appendUtf8(text, code);
  return text;
}

std::string withoutEntities(std::string_view text) {
  constexpr std::size_t longest = 10;
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text[i] == '&' ? text.substr(i, longest).find(';') : std::string_view::npos;
    std::optional<std::string> letter;
    if (end != std::string_view::npos) {
      const std::string_view name = text.substr(i + 1, end - 1);
      letter = name.starts_with('#') ? numberedCharacter(name) : namedCharacter(name);
    }
    plain += letter ? *letter : std::string(1, text[i]);
    if (letter) i += end;
  }
  return plain;
}

// Where the "=" behind "href" stands. Other names end alike ("data-href"), and values may hold the word.
std::size_t equalsOfHref(std::string_view small) {
  for (std::size_t name = small.find("href"); name != std::string_view::npos;
       name = small.find("href", name + 4)) {
    const bool isOwn =
        name > 0 && std::string_view(" \t\r\n\f\"'").find(small[name - 1]) != std::string_view::npos;
    const std::size_t behind = small.find_first_not_of(blanks, name + 4);
    if (isOwn && behind != std::string_view::npos && small[behind] == '=') return behind;
  }
  return std::string_view::npos;
}

// The value that follows "href" in a tag, quoted or not.
std::optional<std::string_view> hrefOf(std::string_view tag, std::string_view small) {
  const std::size_t equals = equalsOfHref(small);
  if (equals == std::string_view::npos) return std::nullopt;
  const std::size_t begin = tag.find_first_not_of(blanks, equals + 1);
  if (begin == std::string_view::npos) return std::nullopt;
  const bool isQuoted = tag[begin] == '"' || tag[begin] == '\'';
  const std::string_view rest = tag.substr(isQuoted ? begin + 1 : begin);
  return rest.substr(0, isQuoted ? rest.find(tag[begin]) : rest.find_first_of(blanks));
}

// What a browser forgives.
std::string forgiven(std::string_view reference) {
  constexpr std::string_view dropped = "\n\r\t";
  std::string plain;
  for (const char c : reference) {
    if (dropped.find(c) == std::string_view::npos) plain += c == ' ' ? "%20" : std::string(1, c);
  }
  return plain;
}

/// The folder that a page shows, and what was found in it.
class Folder {
 public:
  explicit Folder(const std::string& address) : address_(address), parsed_(*parsedAddress(address)) {
    path_ = parsed_.path.substr(0, parsed_.path.rfind('/') + 1);
  }

  void addLink(std::string reference) {
    if (isStep(reference)) return add(std::move(reference));
    const auto resolved = resolvedAddress(address_, forgiven(reference));
    const auto found = resolved ? parsedAddress(*resolved) : std::nullopt;
    const bool isBelow =
        found && found->server == parsed_.server && found->query.empty() && found->path.starts_with(path_);
    if (isBelow) add(found->path.substr(path_.size()));
  }

  void addName(const std::string& name, WebEntryKind kind) {
    const std::string bare = name.ends_with('/') ? name.substr(0, name.size() - 1) : name;
    if (bare.find('/') == std::string::npos)
      add(percentEncoded(bare) + (kind == WebEntryKind::Folder ? "/" : ""));
  }

  std::vector<WebEntry> entries() && {
    std::vector<WebEntry> entries;
    for (auto& [name, entry] : found_) entries.push_back(std::move(entry));
    return entries;
  }

 private:
  // As nearly all links of such pages are, of which there may be many; no need to take it apart.
  static bool isStep(std::string_view reference) {
    const auto isPlain = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
             c == '_' || c == '.' || c == '%';
    };
    const std::string_view step =
        reference.ends_with('/') ? reference.substr(0, reference.size() - 1) : reference;
    return !step.empty() && std::ranges::all_of(step, isPlain);
  }

  /// @param step behind the folder's path, encoded.
  void add(std::string step) {
    const bool isFolder = step.ends_with('/');
    const std::string name = percentDecoded(isFolder ? step.substr(0, step.size() - 1) : step);
    const bool isBelow = !name.empty() && name != "." && name != ".." &&
                         name.find('/') == std::string::npos && step.find('/') >= step.size() - 1;
    if (!isBelow || found_.size() >= mostWebEntries) return;
    Address at = parsed_;
    at.path = path_ + step;
    at.query.clear();
    found_.try_emplace(name, WebEntry{isFolder ? WebEntryKind::Folder : WebEntryKind::File, name, at.text()});
  }

  std::string address_;
  Address parsed_;
  std::string path_;
  std::map<std::string, WebEntry> found_;
};

// Of a tag that begins there; a ">" in a quoted value is a letter of it. Only behind "=" a quote begins one.
std::size_t endOfTag(std::string_view page, std::size_t at) {
  for (at = page.find_first_of("=>", at); at != std::string_view::npos && page[at] == '=';) {
    const std::size_t value = page.find_first_not_of(blanks, at + 1);
    const bool isQuoted = value != std::string_view::npos && (page[value] == '"' || page[value] == '\'');
    const std::size_t close = isQuoted ? page.find(page[value], value + 1) : std::string_view::npos;
    at = page.find_first_of("=>", close == std::string_view::npos ? at + 1 : close + 1);
  }
  return at;
}

void readPage(std::string_view page, Folder& folder) {
  const std::string small = smallLetters(page);
  for (std::size_t at = small.find("<a"); at != std::string::npos; at = small.find("<a", at)) {
    const bool isLink = at + 2 < small.size() && blanks.find(small[at + 2]) != std::string_view::npos;
    const std::size_t end = isLink ? endOfTag(small, at) : at + 2;
    if (end == std::string::npos) return;
    const std::string_view tag = page.substr(at, end - at);
    const auto reference = isLink ? hrefOf(tag, std::string_view(small).substr(at, end - at)) : std::nullopt;
    if (reference && reference->size() <= longestReference) folder.addLink(withoutEntities(*reference));
    // Behind the tag, so that none of it is looked at twice.
    at = end;
  }
}

void readList(std::string_view text, Folder& folder) {
  CPLPushErrorHandler(CPLQuietErrorHandler);
  CPLJSONDocument document;
  const bool isRead = document.LoadMemory(std::string(text));
  CPLPopErrorHandler();
  if (!isRead || document.GetRoot().GetType() != CPLJSONObject::Type::Array) return;
  const CPLJSONArray list = document.GetRoot().ToArray();
  for (int i = 0; i < list.Size(); ++i) {
    if (list[i].GetType() != CPLJSONObject::Type::Object) continue;
    const bool isFolder = list[i].GetString("type", "") == "directory" || list[i].GetBool("is_dir", false);
    folder.addName(list[i].GetString("name", ""), isFolder ? WebEntryKind::Folder : WebEntryKind::File);
  }
}

}  // namespace

std::vector<WebEntry> readWebListing(std::string_view page, const std::string& address) {
  if (!parsedAddress(address)) return {};
  Folder folder(address);
  if (withoutBlanks(page).starts_with('[')) {
    readList(page, folder);
  } else {
    readPage(page, folder);
  }
  return std::move(folder).entries();
}

}  // namespace vlclientui::client
