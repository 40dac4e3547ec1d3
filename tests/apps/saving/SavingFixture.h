#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "client/ExportFixture.h"

namespace vlclientui::test {

/// Something that a person keeps in a file, in two states: programs write now the one, now the other.
struct Saver {
  enum class State { First, Second };
  /// @param folder that holds all of it. @throws RuntimeFailure, where it tells failures so.
  using Save = std::function<std::string(const std::filesystem::path& folder, State state)>;

  const char* name;
  std::filesystem::path file;  ///< below the folder
  Save save;                   ///< @returns the failure, for a person; empty when it was saved

  friend std::ostream& operator<<(std::ostream& stream, const Saver& saver) { return stream << saver.name; }
};

/// Everything that is saved: settings, projects, references, jobs, registration, connections, and exports in
/// all formats.
[[nodiscard]] const std::vector<Saver>& savers();

/// Services first and second, to export from, below the folder; each saver needs them.
class SavingFixture : public ExportFixture {
 protected:
  SavingFixture();

  [[nodiscard]] std::filesystem::path home() const { return folder() / "out"; }
};

}  // namespace vlclientui::test
