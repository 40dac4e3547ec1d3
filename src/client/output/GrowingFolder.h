#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/output/GrowingFile.h"

namespace vlclientui::client {

/// A folder that only GDAL sees: files made there are growing files. Safe on any thread.
class GrowingFolder {
 public:
  /// Makes the file with that name; may return null.
  using Maker = std::function<std::shared_ptr<GrowingFile>(const std::string& name)>;

  explicit GrowingFolder(Maker maker);
  ~GrowingFolder();
  GrowingFolder(const GrowingFolder&) = delete;
  GrowingFolder& operator=(const GrowingFolder&) = delete;

  /// GDAL's path for a file here.
  [[nodiscard]] std::string pathOf(const std::string& name) const;
  /// Sorted.
  [[nodiscard]] std::vector<std::string> names() const;
  /// Null for an unknown name.
  [[nodiscard]] std::shared_ptr<GrowingFile> find(const std::string& name) const;
  /// Makes an empty file with this name; null when that fails.
  std::shared_ptr<GrowingFile> make(const std::string& name);
  bool remove(const std::string& name);
  /// An errno value: why a file, even one removed since, could not be made or written; 0 without a failure so
  /// far.
  [[nodiscard]] int failureNumber() const;

 private:
  Maker maker_;
  std::string number_;
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<GrowingFile>> files_;
  int failure_ = 0;
};

/// Removes a file by its path from pathOf(); GDAL itself cannot remove files here.
bool removeGrowing(const std::string& path);

}  // namespace vlclientui::client
