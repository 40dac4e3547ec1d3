#include "platform/UserLocale.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include <langinfo.h>
#include <locale.h>

namespace vlclientui::platform {
namespace {

constexpr std::int32_t theUsers = 0x400;

struct Entry {
  std::string_view name;
  std::int32_t id;
  std::string_view decimal;
  std::string_view group;
  std::string_view currency;
};

/// The first entry of a language is its main region. Group separators: no-break spaces are narrow (U+202F)
/// in French, the apostrophe of de-CH is the typographic one (U+2019). Source: Unicode CLDR.
constexpr std::array table = {
    Entry{"en_US", 0x409, ".", ",", "$"},
    Entry{"de_DE", 0x407, ",", ".", "\u20AC"},
    Entry{"de_CH", 0x807, ".", "\u2019", "CHF"},
    Entry{"fr_FR", 0x40C, ",", "\u202F", "\u20AC"},
};

UserLocale toLocale(const Entry& entry) {
  return {entry.id, {std::string(entry.decimal), std::string(entry.group), std::string(entry.currency)}};
}

/// "de-CH.UTF-8@x" is "de_CH".
std::string plainName(const std::string& name) {
  std::string plain = name.substr(0, name.find_first_of(".@"));
  std::replace(plain.begin(), plain.end(), '-', '_');
  return plain;
}

template <typename Condition>
std::optional<UserLocale> findInTable(const Condition& condition) {
  const auto* found = std::find_if(table.begin(), table.end(), condition);
  return found == table.end() ? std::nullopt : std::optional(toLocale(*found));
}

std::string_view languageOf(std::string_view name) { return name.substr(0, name.find('_')); }

class LibraryLocale {
 public:
  explicit LibraryLocale(const std::string& name)
      : locale_(newlocale(LC_NUMERIC_MASK | LC_MONETARY_MASK | LC_CTYPE_MASK, name.c_str(), nullptr)) {}
  ~LibraryLocale() {
    if (isKnown()) freelocale(locale_);
  }
  LibraryLocale(const LibraryLocale&) = delete;
  LibraryLocale& operator=(const LibraryLocale&) = delete;

  [[nodiscard]] bool isKnown() const { return locale_ != nullptr; }
  [[nodiscard]] std::string ask(nl_item item) const { return nl_langinfo_l(item, locale_); }

 private:
  locale_t locale_;
};

std::optional<UserLocale> askLibrary(const std::string& plain) {
  // Only a locale's UTF-8 form has separators that can be used as they are.
  const LibraryLocale library(plain + ".UTF-8");
  if (plain.empty() || !library.isKnown() || library.ask(RADIXCHAR).empty()) return std::nullopt;
  UserLocale result{theUsers, {library.ask(RADIXCHAR), library.ask(THOUSEP), ""}};
  // The first character tells where the symbol stands.
  if (const std::string currency = library.ask(CRNCYSTR); currency.size() > 1) {
    result.format.currencySymbol = currency.substr(1);
  }
  return result;
}

}  // namespace

UserLocale findLocale(const std::string& name) {
  const std::string plain = plainName(name);
  if (plain.empty() || plain == "C" || plain == "POSIX") return toLocale(table.front());
  if (const auto exact = findInTable([&](const Entry& entry) { return entry.name == plain; })) return *exact;
  if (const auto asked = askLibrary(plain)) return *asked;
  const auto speaksTheSame = [&](const Entry& entry) { return languageOf(entry.name) == languageOf(plain); };
  UserLocale result = findInTable(speaksTheSame).value_or(toLocale(table.front()));
  result.id = theUsers;
  return result;
}

UserLocale findLocale(std::int32_t id) {
  UserLocale unknown = toLocale(table.front());
  unknown.id = 0;
  return findInTable([id](const Entry& entry) { return entry.id == id; }).value_or(unknown);
}

}  // namespace vlclientui::platform
