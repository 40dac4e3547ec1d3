#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "client/output/GrowingFolder.h"
#include "client/output/PartialFolder.h"

namespace vlclientui::client {

/// Companions that GDAL would read with an image of that name: description, overviews, mask. For a link also
/// those of the file behind it.
[[nodiscard]] std::vector<std::filesystem::path> descriptionsOf(const std::filesystem::path& image);

/// A file and its companions while they grow, hidden, under their final names. They vanish with this object,
/// and nameless ones also with the process, so an export that ends early leaves nothing. A file that replaces
/// another keeps its access rights; a link leads to the new file, with companions beside the link.
class PartialFiles {
 public:
  /// @throws RuntimeFailure when the target's folder is missing or cannot be written, or the target is itself
  /// a folder.
  explicit PartialFiles(const std::filesystem::path& target, PartialPlace place = PartialPlace::WithoutName);
  PartialFiles(const PartialFiles&) = delete;
  PartialFiles& operator=(const PartialFiles&) = delete;

  /// GDAL's path for the growing target. Names that GDAL derives from it lie in the same folder.
  [[nodiscard]] std::string file() const;
  /// Why the system refused to write, with advice; empty when it did not.
  [[nodiscard]] std::string failure() const;

  /// Writes another file beside the target, or the target itself. @throws RuntimeFailure when not everything
  /// could be written.
  void write(const std::string& name, std::string_view content);

  /// Writes everything to disk, then moves the companions and at last the target into place. Removes old
  /// descriptions without a successor, since they would describe another image.
  /// @throws RuntimeFailure; the former target is then untouched.
  void publish();

 private:
  [[nodiscard]] std::shared_ptr<GrowingFile> make(const std::string& name);
  [[nodiscard]] PartialFolder& folderOf(const std::filesystem::path& place);
  void syncAll();
  void giveNames();
  void moveAll();
  void move(const std::string& name);
  void removeFormerDescriptions();

  std::filesystem::path target_;
  PartialPlace place_;
  std::map<std::filesystem::path, PartialFolder> folders_;  ///< by the folder that holds their place
  std::map<std::string, std::filesystem::path> places_;     ///< place of each file, with links followed
  GrowingFolder files_;
};

/// @throws RuntimeFailure; the former file is untouched then.
void writeWholeFile(const std::filesystem::path& target, std::string_view content);

}  // namespace vlclientui::client
