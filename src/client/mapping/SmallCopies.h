#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Small copies of large rasters that have no overviews, for drawing them from afar: in a folder of their
/// own, never beside or in the data. A copy belongs to a file of a path, a size and a time; of one that has
/// changed there is none. Those used last stay, up to a number of bytes. Several programs may use one folder.
/// Any thread may use it.
class SmallCopies {
 public:
  /// @param folder made when the first copy is, for its owner alone. @param mostBytes of all copies together.
  SmallCopies(std::filesystem::path folder, std::uintmax_t mostBytes);

  /// The copy of a raster as it is now; nothing when there is none. Counts as its use.
  [[nodiscard]] std::optional<std::filesystem::path> find(const std::filesystem::path& raster) const;

  /// Whether there can be a copy: of plain files only.
  [[nodiscard]] static bool canBeOf(const std::filesystem::path& raster);

  /// How the making of a copy ended.
  enum class End {
    Made,    ///< there is a copy that can be used
    GivenUp  ///< the work was given up; nothing is left of it
  };
  /// Does nothing where there is a copy that can be used. Reads all of a raster, and writes its copy whole or
  /// not at all. Ends soon when the work of this thread is given up.
  /// @param raster native path. @param progress called now and then with the share that is done, 0 to 1. May
  /// be empty.
  /// @throws RuntimeFailure when it cannot be read, needs no copy, or its copy cannot be written or kept.
  End make(const std::filesystem::path& raster, const std::function<void(double)>& progress);

  /// Another one whenever a copy was made here, or found that another program has made.
  [[nodiscard]] std::size_t version() const { return version_; }
  /// Of all copies.
  [[nodiscard]] std::uintmax_t bytes() const;
  /// Where the copies are.
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

 private:
  void makeFolder() const;
  void keep(const std::filesystem::path& written, const std::filesystem::path& raster);
  void dropOldest(const std::filesystem::path& newest) const;

  const std::filesystem::path folder_;
  const std::uintmax_t mostBytes_;
  std::atomic<std::size_t> version_ = 0;
  std::mutex making_;
  std::set<std::string> known_;  ///< names of copies that the version counts
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
