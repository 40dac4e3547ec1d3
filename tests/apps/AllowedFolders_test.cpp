#include "AllowedFolders.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

namespace vlclientui::vlhost {
namespace {

using Arguments = std::vector<std::string>;

constexpr const char* allowedVariable = "VLCLIENTUI_ALLOW_OUTSIDE";

class AllowedFolders : public testing::Test {
 protected:
  AllowedFolders() { unsetenv(allowedVariable); }
  ~AllowedFolders() override { unsetenv(allowedVariable); }
};

TEST_F(AllowedFolders, AreTakenOutOfTheArgumentsAndToldToTheEnvironment) {
  setenv(allowedVariable, "/former", 1);
  Arguments words = {"services", "--allow-outside", "/tmp", ".", "--allow-outside=."};
  EXPECT_EQ(takeAllowedFolders(words), "");
  EXPECT_EQ(words, (Arguments{"services", "."}));
  EXPECT_EQ(std::getenv(allowedVariable), "/former:/tmp:" + std::filesystem::absolute(".").string());
}

TEST_F(AllowedFolders, OfNoneLeaveTheEnvironmentAlone) {
  Arguments words = {"services"};
  EXPECT_EQ(takeAllowedFolders(words), "");
  EXPECT_EQ(std::getenv(allowedVariable), nullptr);
}

TEST_F(AllowedFolders, AreFoldersThatAreThere) {
  Arguments missing = {"--allow-outside", "/nowhere/at/all"};
  EXPECT_EQ(takeAllowedFolders(missing), "--allow-outside: '/nowhere/at/all' is no folder");
  Arguments none = {"services", "--allow-outside"};
  EXPECT_EQ(takeAllowedFolders(none), "--allow-outside wants a folder");
  EXPECT_EQ(std::getenv(allowedVariable), nullptr);
}

}  // namespace
}  // namespace vlclientui::vlhost
