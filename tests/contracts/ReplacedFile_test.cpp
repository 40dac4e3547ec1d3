#include "contracts/ReplacedFile.h"

#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

class ReplacedFiles : public testing::Test {
 protected:
  ReplacedFiles() {
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "deep");
    std::ofstream(folder_ / "deep/real") << "text";
    fs::permissions(folder_ / "deep/real", fs::perms(0640));
  }
  ~ReplacedFiles() override { fs::remove_all(folder_); }

  fs::path folder_ = fs::temp_directory_path() / ("vl_replaced_file_test_" + std::to_string(getpid()));
};

TEST_F(ReplacedFiles, AreWhatStandsAtThePathWithItsRights) {
  const ReplacedFile replaced = replacedFile(folder_ / "deep/real");
  EXPECT_EQ(replaced.file, folder_ / "deep/real");
  EXPECT_EQ(replaced.rights, fs::perms(0640));
}

TEST_F(ReplacedFiles, StandBehindLinksToLinks) {
  fs::create_symlink("deep/real", folder_ / "near");
  fs::create_symlink(folder_ / "near", folder_ / "far");
  const ReplacedFile replaced = replacedFile(folder_ / "far");
  EXPECT_EQ(replaced.file, folder_ / "deep/real");
  EXPECT_EQ(replaced.rights, fs::perms(0640));
}

TEST_F(ReplacedFiles, AreToldFromDevicesAndPipes) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_symlink("/dev/null", folder_ / "link");
  EXPECT_TRUE(replacedFile(folder_ / "pipe").isDevice);
  EXPECT_TRUE(replacedFile(folder_ / "link").isDevice);
  for (const char* other : {"deep", "deep/real", "missing"})
    EXPECT_FALSE(replacedFile(folder_ / other).isDevice) << other;
}

TEST_F(ReplacedFiles, NeedNotBeThere) {
  fs::create_symlink("deep/wanted", folder_ / "link");
  for (const auto& [path, file] : {std::pair("link", "deep/wanted"), std::pair("new", "new")}) {
    EXPECT_EQ(replacedFile(folder_ / path).file, folder_ / file);
    EXPECT_EQ(replacedFile(folder_ / path).rights, std::nullopt);
  }
}

TEST_F(ReplacedFiles, InACircleOfLinksAreTheFirstOne) {
  fs::create_symlink("b", folder_ / "a");
  fs::create_symlink("a", folder_ / "b");
  EXPECT_EQ(replacedFile(folder_ / "a").file, folder_ / "a");
  EXPECT_EQ(replacedFile(folder_ / "a").rights, std::nullopt);
}

TEST_F(ReplacedFiles, ThatAreFoldersHandNoRightsOn) {
  EXPECT_EQ(replacedFile(folder_).file, folder_);
  EXPECT_EQ(replacedFile(folder_).rights, std::nullopt);
}

}  // namespace
}  // namespace vlclientui
