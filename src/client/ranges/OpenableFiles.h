#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "client/ranges/RemoteFile.h"
#include "client/ranges/WebMosaicTree.h"

namespace vlclientui::client {

/// Files of the web in the form in which the raster library may have them: images as they are, virtual
/// rasters and metadata as they can do no harm. Any thread may ask.
class OpenableFiles {
 public:
  using FilePtr = std::shared_ptr<RemoteFile>;

  [[nodiscard]] static OpenableFiles& shared();

  /// @param name of this room. @returns null for what is not handed out; the raster library is told why.
  [[nodiscard]] FilePtr open(const std::string& name);

 private:
  /// A virtual raster in the state in which it was met.
  struct Form {
    FilePtr met;
    FilePtr openable;     ///< null where it is refused
    std::string refusal;  ///< for a person
    MosaicNode node;
    bool isCounted = false;  ///< with all below it
  };
  using FormPtr = std::shared_ptr<const Form>;

  [[nodiscard]] FilePtr imageOrMosaic(const FilePtr& file, const std::string& name);
  [[nodiscard]] FilePtr openMosaic(const FilePtr& file, const std::string& name);
  [[nodiscard]] FormPtr formOf(const FilePtr& file, const std::string& name);
  [[nodiscard]] FormPtr known(const FilePtr& file, const std::string& name);
  void keep(const std::string& name, FormPtr form);
  [[nodiscard]] MosaicTree::Found below(const std::string& name);

  std::mutex mutex_;
  std::map<std::string, FormPtr> forms_;
  std::size_t bytes_ = 0;  ///< of them
};

}  // namespace vlclientui::client
