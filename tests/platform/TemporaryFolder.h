#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace vlclientui::platform {

/// A folder of its own for each test that touches files; goes away with all that is in it.
class TemporaryFolder : public testing::Test {
 protected:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vl-platform-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No temporary folder");
    folder_ = name;
  }
  ~TemporaryFolder() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ + "/" + name; }
  void write(const std::string& name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> result;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      result.insert(entry.path().filename().string());
    }
    return result;
  }

  std::string folder_;
};

}  // namespace vlclientui::platform
