#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vlclientui::client {

/// False for bytes that are no UTF-8 and for control characters: nobody could read or type such a name.
[[nodiscard]] bool isTextName(std::string_view name);

/// A name as the list of services can show it and a reference can carry it: every character that cannot
/// becomes
/// "_". The same for a name that is so already; never empty. docs/catalogue.md tells the characters.
[[nodiscard]] std::string carriedName(std::string_view name);

/// The folder of a whole name, without "/" at its end; empty for what stands in none.
[[nodiscard]] std::string folderOfName(const std::string& name);
/// The whole name of what stands in a folder, which may be empty.
[[nodiscard]] std::string nameInFolder(const std::string& folder, const std::string& leaf);

/// Names of equal keys cannot stand beside each other: the list takes them for one.
[[nodiscard]] std::string nameKey(std::string_view name);

/// One of the things that stand in a folder: a folder or a file.
struct Sibling {
  std::string name;       ///< of a file without its extension
  std::string wholeName;  ///< with it; no two siblings have the same
};

struct CatalogueName {
  std::string shown;  ///< in lists and references, of a key of its own among the siblings
  std::string real;   ///< what it is made from
  std::string plain;  ///< what a person calls it, alone or not: the real name without an extension

  bool operator==(const CatalogueName&) const = default;
};

/// The names of all that stands in one folder, in their order. They depend on the siblings of the same keys
/// alone, and not on the order.
[[nodiscard]] std::vector<CatalogueName> nameSiblings(const std::vector<Sibling>& siblings);

/// Those that the name, shown or real, can be one of, and those whose names depend on theirs: their places
/// among the siblings, in order.
[[nodiscard]] std::vector<std::size_t> siblingsConcerned(const std::vector<Sibling>& siblings,
                                                         std::string_view name);

}  // namespace vlclientui::client
