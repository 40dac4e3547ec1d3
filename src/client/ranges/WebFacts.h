#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/ranges/RemoteFile.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

class RemoteFiles;

/// What the headers of images of the web tell, remembered as long as they are as they were. Any thread may
/// ask.
class WebFacts {
 public:
  /// @param files must outlive this object.
  explicit WebFacts(RemoteFiles& files) : files_(files) {}

  /// The server cannot be had just now, or the wait was given up: nobody knows what the file is.
  struct Unread {
    std::string reason;  ///< for a person
  };
  using Read = std::variant<RasterFacts, RasterProblem, Unread>;
  /// In the order of the addresses, several at a time.
  [[nodiscard]] std::vector<Read> read(const std::vector<std::string>& addresses);

 private:
  struct Known {
    FileState state;
    RasterResult result;
  };

  [[nodiscard]] Read readOne(const std::string& address, class GeographicBounds& geographic);
  [[nodiscard]] std::optional<RasterResult> known(const std::string& name, const FileState& state);

  RemoteFiles& files_;
  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

}  // namespace vlclientui::client
