// Help on Ctrl+F1.

#include <gmock/gmock.h>

#include "frame/General.h"
#include "frame/HelpLaunches.h"
#include "support/FramePlatform.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t f1 = 112;
constexpr std::int32_t ctrl = 2;
constexpr const char* registryHome = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Ostrel\\Vor Lane\\Home";

class Help : public FramePlatform {};

TEST_F(Help, OpensAtThePageBelowHome) {
  LaunchHelp(f1, ctrl, true, "Adding_an_Image_Service");
  EXPECT_THAT(system->launched,
              ElementsAre("hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Adding_an_Image_Service.htm"));
}

TEST_F(Help, AppendsNoSecondBackslashToHome) {
  clientLibrary->home = "C:\\Home\\";
  LaunchHelp(f1, ctrl, true, "Page");
  EXPECT_THAT(system->launched, ElementsAre("hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Page.htm"));
}

TEST_F(Help, DoesNotQuoteAPathWithBlanks) {
  clientLibrary->home = "C:\\My Home";
  LaunchHelp(f1, ctrl, true, "Page");
  EXPECT_THAT(system->launched, ElementsAre("hh.exe C:\\My Home\\Help\\Vorlane_Clients.chm::/Page.htm"));
}

TEST_F(Help, OpensFromTheLiteralDefaultWhenHomeIsEmpty) {
  clientLibrary->home = "";
  LaunchHelp(f1, ctrl, true, "Page");
  EXPECT_THAT(
      system->launched,
      ElementsAre("hh.exe C:\\Program Files\\Ostrel\\Vor Lane\\Help\\Vorlane_Clients.chm::/Page.htm"));
}

TEST_F(Help, OpensOnlyWithCtrlAlone) {
  for (const std::int32_t shift : {0, 1, 3, 4, 5, 6, 7}) LaunchHelp(f1, shift, true, "Page");
  EXPECT_THAT(system->launched, IsEmpty());
}

TEST_F(Help, OpensForNoOtherKey) {
  for (const std::int32_t key : {0, 8, 13, 111, 113}) LaunchHelp(key, ctrl, true, "Page");
  EXPECT_THAT(system->launched, IsEmpty());
}

TEST_F(Help, DoesNotOpenWhileNoControlHoldsTheFocus) {
  LaunchHelp(f1, ctrl, false, "Page");
  EXPECT_THAT(system->launched, IsEmpty());
}

TEST_F(Help, AsksTheRegistryForHomeWhereTold) {
  system->registry[registryHome] = {1, std::string("D:\\Reg\0", 7), 0};
  LaunchHelp(f1, ctrl, true, "Page", HelpHome::Registry);
  EXPECT_THAT(system->launched, ElementsAre("hh.exe D:\\Reg\\Help\\Vorlane_Clients.chm::/Page.htm"));
  EXPECT_THAT(system->registryLog,
              ElementsAre("open HKEY_LOCAL_MACHINE\\SOFTWARE\\Ostrel\\Vor Lane", "query Home", "close"));
}

TEST_F(Help, OpensFromTheLiteralDefaultWhenTheRegistryHasNoHome) {
  LaunchHelp(f1, ctrl, true, "Page", HelpHome::Registry);
  EXPECT_THAT(
      system->launched,
      ElementsAre("hh.exe C:\\Program Files\\Ostrel\\Vor Lane\\Help\\Vorlane_Clients.chm::/Page.htm"));
}

TEST_F(Help, DoesNotAskTheRegistryOtherwise) {
  system->registry[registryHome] = {1, std::string("D:\\Reg\0", 7), 0};
  LaunchHelp(f1, ctrl, true, "Page");
  EXPECT_THAT(system->registryLog, IsEmpty());
}

TEST_F(Help, IsCountedWhereItOpens) {
  const std::size_t before = helpLaunches();
  LaunchHelp(f1, 0, true, "Page");
  EXPECT_EQ(helpLaunches(), before);
  LaunchHelp(f1, ctrl, true, "Page");
  EXPECT_EQ(helpLaunches(), before + 1);
}

}  // namespace
}  // namespace vlclientui::test
