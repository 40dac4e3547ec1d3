#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "client/jobs/ExportJob.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::vlhost {

/// Remembers across runs which jobs were written, one line of JSON each, so that an interrupted list can go
/// on. Several processes may add to one file at a time.
class JobLog {
 public:
  /// @param file empty for a log that remembers nothing; one that is not there begins empty. A line that
  /// makes no sense, such as one cut off, does not count.
  /// @throws RuntimeFailure for one that cannot be read or written, before anything is exported.
  JobLog(std::filesystem::path file, const XmlService& xml);

  /// Tells the rasters of a job from what they were, as client::inputMark.
  using Inputs = std::function<std::string(const client::ExportJob& job)>;

  /// Whether the job was written as it is now, of the rasters that there are now, and its file stands as it
  /// was left. Rasters are looked at where all else is as it was.
  [[nodiscard]] bool isDone(const client::ExportJob& job, const Inputs& inputs) const;
  /// Whether it remembers anything.
  [[nodiscard]] bool isKept() const { return !file_.empty(); }
  /// @param inputs of the job before it was run. @throws RuntimeFailure when it cannot be written down.
  void add(const client::ExportJob& job, const std::string& inputs);

 private:
  void read();
  void append(const std::string& text) const;
  [[nodiscard]] std::string lineOf(const client::ExportJob& job, const std::string& inputs) const;

  std::filesystem::path file_;
  const XmlService& xml_;
  bool isTorn_ = false;                       ///< the last line has no end
  std::map<std::string, std::string> lines_;  ///< the last one of each file that was written
};

}  // namespace vlclientui::vlhost
