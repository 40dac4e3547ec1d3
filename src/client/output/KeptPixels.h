#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "client/output/ExportJournal.h"
#include "client/output/GrowingFile.h"
#include "client/raster/StepKeeper.h"

namespace vlclientui::client {

/// What stands beside a file of an export that broke off.
struct KeptExport {
  ExportIdentity identity;
  std::uint64_t bytes = 0;  ///< of pixels
  bool isInUse = false;     ///< another export goes on with it right now
};

/// The pixels that an export has read so far, on disk in a folder beside its file, `<file>.unfinished`, so
/// that another run goes on from there, however this one ends. A block of pixels counts once it is on the
/// disk: the journal tells of it afterwards. One process at a time has the folder.
class KeptPixels : public StepKeeper {
 public:
  /// Goes on with what is kept, or begins. @param target of the export.
  /// @throws RuntimeFailure where another export uses it, where what is kept is of another request or of
  /// sources that have changed since, and where the folder cannot be written.
  KeptPixels(const std::filesystem::path& target, const ExportIdentity& identity);
  /// What was read stays; a folder without any pixels goes.
  ~KeptPixels() override;
  KeptPixels(const KeptPixels&) = delete;
  KeptPixels& operator=(const KeptPixels&) = delete;

  [[nodiscard]] bool find(const std::string& step, std::span<std::byte> pixels) override;
  [[nodiscard]] bool keep(const std::string& step, std::span<const std::byte> pixels) override;

  /// Of pixels that are kept.
  [[nodiscard]] std::uint64_t bytes() const;
  /// Why something could not be kept, for a person; empty when all could.
  [[nodiscard]] std::string failure() const;
  /// The export is whole: takes the folder away.
  void discard();

 private:
  void open(const ExportIdentity& identity);
  void takeUp(const ExportIdentity& identity);
  bool settle();
  void settleNowAndThen();
  void stopSettling();
  void removeFolder();

  std::filesystem::path folder_;
  std::unique_ptr<GrowingFile> journal_;
  std::unique_ptr<GrowingFile> pixels_;
  mutable std::mutex mutex_;
  std::map<std::string, KeptBlock> blocks_;
  std::vector<KeptBlock> waiting_;  ///< written, and not yet told by the journal
  std::uint64_t journalBytes_ = 0;
  std::uint64_t pixelBytes_ = 0;
  std::uint64_t settledBytes_ = 0;
  bool isBroken_ = false;  ///< something could not be brought to the disk
  bool isEnding_ = false;
  std::condition_variable ending_;
  std::thread settling_;
};

/// What is kept of an export to that file; nothing where nothing is.
[[nodiscard]] std::optional<KeptExport> keptExport(const std::filesystem::path& target);
/// Takes it away. @returns false where another export uses it.
bool discardKept(const std::filesystem::path& target);
/// Where it lies.
[[nodiscard]] std::filesystem::path keptFolder(const std::filesystem::path& target);

}  // namespace vlclientui::client
