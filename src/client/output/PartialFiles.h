#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "client/output/GrowingFolder.h"
#include "client/output/PartialFolder.h"

namespace vlclientui::client {

/// What a raster library would read along with an image of that name: description, overviews, mask. Of a link
/// also what it would read with the file behind.
[[nodiscard]] std::vector<std::filesystem::path> descriptionsOf(const std::filesystem::path& image);

/// A file and all that goes with it while they grow, out of sight under their final names. Gone with this
/// object, and without a name also with the process, so that whatever ends the work early leaves nothing.
/// Where a file has a former one, that one's rights are kept, and a link leads to the new file afterwards;
/// what goes with it stands beside the link.
class PartialFiles {
 public:
  /// @throws RuntimeFailure when the target's folder is missing or cannot be written, or the target is a
  /// folder itself.
  explicit PartialFiles(const std::filesystem::path& target, PartialPlace place = PartialPlace::WithoutName);
  PartialFiles(const PartialFiles&) = delete;
  PartialFiles& operator=(const PartialFiles&) = delete;

  /// What the raster library calls the target while it grows. Names that it makes up from this one lie
  /// beside the target.
  [[nodiscard]] std::string file() const;
  /// Why the system refused to write, with what helps; empty when it did not.
  [[nodiscard]] std::string failure() const;

  /// One more file beside the target, or the target itself. @throws RuntimeFailure when not all could be
  /// written.
  void write(const std::string& name, std::string_view content);

  /// Brings all to the disk, then moves all beside the target and over it, the target itself last. Former
  /// descriptions that have no successor are removed, as they would be those of another image.
  /// @throws RuntimeFailure; the former target is untouched then.
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
  std::map<std::filesystem::path, PartialFolder> folders_;  ///< by the folder that holds the place
  std::map<std::string, std::filesystem::path> places_;     ///< where each file belongs, behind all links
  GrowingFolder files_;
};

/// @throws RuntimeFailure; the former file is untouched then.
void writeWholeFile(const std::filesystem::path& target, std::string_view content);

}  // namespace vlclientui::client
