#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "client/ranges/RemoteFile.h"

namespace vlclientui::client {

class AddressProbe;

/// The files of the web that were met lately, with the blocks of them that are kept. Any thread may ask.
class RemoteFiles {
 public:
  /// How long a file counts as what it was.
  static constexpr std::chrono::seconds freshness{60};
  /// How long a file that cannot be had is not asked for again: the raster library tries in several ways.
  static constexpr std::chrono::milliseconds failureLasts{500};

  /// @param transport must outlive this object. @param probe what it was answered counts as met; may be null,
  /// must outlive this object.
  explicit RemoteFiles(Transport& transport, AddressProbe* probe = nullptr);

  /// The one of this process.
  [[nodiscard]] static RemoteFiles& shared();

  /// A file as it is now, the same object as before where it is the same file: its blocks stay. One that was
  /// met a while ago is asked for whether it still is the same.
  [[nodiscard]] RemoteFile::Met meet(const std::string& address);

  /// Tells which files lie beside each other. Without this nothing is looked for beside a file.
  /// @param folder an address with "/" at its end. @param names of files, as the raster library knows them.
  void tellFolder(const std::string& folder, std::vector<std::string> names);
  /// The names in the folder of a name, as they were told; empty for none.
  [[nodiscard]] std::vector<std::string> neighbors(const std::string& name) const;

  /// Forgets all files and blocks.
  void forget();

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    std::string address;
    std::shared_ptr<RemoteFile> file;
    Clock::time_point checked;
  };

  struct Failed {
    RemoteFile::Problem problem;
    Clock::time_point until;
  };

  class Turn;

  [[nodiscard]] std::optional<RemoteFile::Met> metLately(const std::string& address);
  [[nodiscard]] Known known(const std::string& address);
  [[nodiscard]] RemoteFile::Met meetFirst(const std::string& address);
  [[nodiscard]] RemoteFile::Met meetNow(const std::string& address);
  [[nodiscard]] std::optional<RemoteFile::Problem> failure(const std::string& address);
  void keep(const std::string& address, const std::shared_ptr<RemoteFile>& file);
  void dropOldest();

  Transport& transport_;
  AddressProbe* probe_;
  TileStore blocks_;
  mutable std::mutex mutex_;
  std::list<Known> order_;  ///< used last, first
  std::map<std::string, std::list<Known>::iterator> places_;
  std::map<std::string, std::vector<std::string>> folders_;
  std::map<std::string, Failed> failures_;
  std::set<std::string> meeting_;  ///< addresses that somebody asks for just now
  std::condition_variable turned_;
};

}  // namespace vlclientui::client
