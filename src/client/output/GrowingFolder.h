#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/output/GrowingFile.h"

namespace vlclientui::client {

/// A folder that only the raster library sees: what it makes there are growing files. For any thread.
class GrowingFolder {
 public:
  /// Makes the file of a name; may return null.
  using Maker = std::function<std::shared_ptr<GrowingFile>(const std::string& name)>;

  explicit GrowingFolder(Maker maker);
  ~GrowingFolder();
  GrowingFolder(const GrowingFolder&) = delete;
  GrowingFolder& operator=(const GrowingFolder&) = delete;

  /// What the raster library calls a file here.
  [[nodiscard]] std::string pathOf(const std::string& name) const;
  /// Sorted.
  [[nodiscard]] std::vector<std::string> names() const;
  /// Null when there is none.
  [[nodiscard]] std::shared_ptr<GrowingFile> find(const std::string& name) const;
  /// The file of this name, empty. Null when it cannot be made.
  std::shared_ptr<GrowingFile> make(const std::string& name);
  bool remove(const std::string& name);
  /// An errno value: why a file could not be made or written, also one that has been removed since; 0 when
  /// nothing failed so far.
  [[nodiscard]] int failureNumber() const;

 private:
  Maker maker_;
  std::string number_;
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<GrowingFile>> files_;
  int failure_ = 0;
};

/// By what pathOf() gave: the raster library itself cannot remove a file here.
bool removeGrowing(const std::string& path);

}  // namespace vlclientui::client
