#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <stdlib.h>
#include <unistd.h>

namespace vlclientui::test {

/// Sets an environment variable, or takes it away, and puts the former value back.
class EnvironmentKeeper {
 public:
  EnvironmentKeeper(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
    if (const char* const former = std::getenv(name_.c_str())) former_ = former;
    set(value);
  }
  EnvironmentKeeper(const EnvironmentKeeper&) = delete;
  EnvironmentKeeper& operator=(const EnvironmentKeeper&) = delete;
  ~EnvironmentKeeper() { set(former_); }

 private:
  void set(const std::optional<std::string>& value) const {
    value ? setenv(name_.c_str(), value->c_str(), 1) : unsetenv(name_.c_str());
  }

  std::string name_;
  std::optional<std::string> former_;
};

/// A folder of its own, removed with the object, that others may enter.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vlclientui-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot make a temporary folder");
    path_ = pattern;
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// The user's data folder in a temporary one, so that no test touches a real registration.
class TemporaryDataHome {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
  [[nodiscard]] std::filesystem::path folder() const { return path() / "VLClientUI"; }
  [[nodiscard]] std::filesystem::path file() const { return folder() / "classes.tsv"; }

  void write(const std::string& text) const {
    std::filesystem::create_directories(folder());
    std::ofstream(file(), std::ios::binary) << text;
  }
  [[nodiscard]] std::string read() const {
    std::ostringstream text;
    text << std::ifstream(file(), std::ios::binary).rdbuf();
    return text.str();
  }
  /// Names in the folder of the registration file.
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder()))
      found.push_back(entry.path().filename());
    return found;
  }

 private:
  TemporaryFolder folder_;
  EnvironmentKeeper variable_{"XDG_DATA_HOME", folder_.path().string()};
};

}  // namespace vlclientui::test
