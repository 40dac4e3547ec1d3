#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What becomes of the pixels that an export has read, where it breaks off before its file is whole.
enum class Keeping {
  Nothing,  ///< they go
  Begin,    ///< they are kept; refused where an earlier export to the file kept some
  GoOn,     ///< they are kept, and those that an earlier export kept are not read again
  Anew,     ///< they are kept; what an earlier export kept goes first
};

/// What an earlier export to a file kept.
struct KeptPart {
  std::uint64_t bytes = 0;  ///< of pixels
  bool isInUse = false;     ///< another export goes on with it right now
};

/// What an export is going to take, as far as a sample of it tells.
struct ExportForecast {
  bool isRemote = false;              ///< pixels come from servers
  std::uint64_t requests = 0;         ///< for pixels
  std::uint64_t bytesToFetch = 0;     ///< an estimate, less what is kept
  std::uint64_t bytesToWrite = 0;     ///< an estimate
  double seconds = 0;                 ///< an estimate, of fetching
  std::filesystem::path folder;       ///< of the file
  std::optional<std::uint64_t> room;  ///< bytes that are free there; nothing where it does not tell
  /// What an earlier export to the same file kept; nothing for none.
  std::optional<KeptPart> kept;
  std::vector<std::string> limits;  ///< of servers and disks that are met, a sentence each
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
