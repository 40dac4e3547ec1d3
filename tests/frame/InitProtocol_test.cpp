#include "frame/InitProtocol.h"

#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

class InitSteps : public FramePlatform {};

TEST_F(InitSteps, PutTheUserDataFolderBelowTheDocumentsFolder) {
  buildUserDataFolder();
  EXPECT_EQ(threadState().UserDataFolder, "C:\\Documents\\Ostrel\\Vor Lane");
}

TEST_F(InitSteps, KeepTheTailWhenThereIsNoDocumentsFolder) {
  system->shellFolders.clear();
  buildUserDataFolder();
  EXPECT_EQ(threadState().UserDataFolder, "\\Ostrel\\Vor Lane");
}

TEST_F(InitSteps, AppendTheDefinitionFileToTheInstallFolderAsItIs) {
  buildClientXADefPath();
  EXPECT_EQ(threadState().ClientXADefPath, "C:\\Program\\VLClient.XADef");
  clientLibrary->definitionsFolder = "C:\\NoSeparator";
  buildClientXADefPath();
  EXPECT_EQ(threadState().ClientXADefPath, "C:\\NoSeparatorVLClient.XADef");
}

TEST(InitTexts, NameTheFile) {
  EXPECT_EQ(missingDefinitionText("C:\\P\\VLClient.XADef"),
            "Initialization failed. File 'C:\\P\\VLClient.XADef' does not exist.");
  EXPECT_EQ(invalidDefinitionText("C:\\P\\VLClient.Xfdef"),
            "Initialization failed. File 'C:\\P\\VLClient.Xfdef' is an invalid xad.");
}

TEST(ShowGuard, RefusesBeforeInit) {
  std::string status = "former";
  EXPECT_FALSE(passesShowGuard({false, false}, status));
  EXPECT_EQ(status, "Cannot show without initializing the object");
}

TEST(ShowGuard, ReplacesTheLongTextOfAFailedInitByTheShortOne) {
  std::string status = missingDefinitionText("x");
  EXPECT_FALSE(passesShowGuard({true, false}, status));
  EXPECT_EQ(status, "Initialization failed");
}

TEST(ShowGuard, LetsAReadyObjectPassAndKeepsTheStatus) {
  std::string status = "former";
  EXPECT_TRUE(passesShowGuard({true, true}, status));
  EXPECT_EQ(status, "former");
}

TEST(ShowGuard, LooksAtTheCallFirst) {
  std::string status;
  EXPECT_FALSE(passesShowGuard({false, true}, status));
  EXPECT_EQ(status, "Cannot show without initializing the object");
}

}  // namespace
}  // namespace vlclientui::test
