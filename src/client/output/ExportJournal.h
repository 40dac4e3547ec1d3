#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The text of the journal that goes with pixels kept of an export: a line for what identifies it, then one
/// for each block of pixels. Each line ends with a checksum of itself; the first that is not whole ends it.
namespace vlclientui::client {

/// Whoever goes on with an export has to have the same.
struct ExportIdentity {
  std::string request;  ///< a mark of what is asked for, and of how the service draws it
  std::string source;   ///< a mark of the content of all sources that take part

  bool operator==(const ExportIdentity&) const = default;
};

/// Pixels that are kept.
struct KeptBlock {
  std::string step;          ///< as its reader names it; no line end
  std::uint64_t offset = 0;  ///< in the file of pixels
  std::uint64_t bytes = 0;
  std::uint32_t check = 0;  ///< of the pixels

  bool operator==(const KeptBlock&) const = default;
};

struct JournalContent {
  bool isBegun = false;  ///< the identity is there
  ExportIdentity identity;
  std::vector<KeptBlock> blocks;
  std::size_t wholeBytes = 0;  ///< of the text, up to the last line that is whole
};

[[nodiscard]] std::string journalLine(const ExportIdentity& identity);
[[nodiscard]] std::string journalLine(const KeptBlock& block);
[[nodiscard]] JournalContent readJournal(std::string_view text);

/// A checksum (CRC-32).
[[nodiscard]] std::uint32_t checkOf(std::span<const std::byte> bytes);

}  // namespace vlclientui::client
