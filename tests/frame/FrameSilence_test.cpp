// Every silent end in the shared helpers reaches the observer.

#include "frame/General.h"
#include "support/FramePlatform.h"
#include "support/HeardSilence.h"

namespace vlclientui::test {
namespace {

class FrameSilence : public FramePlatform {};

TEST_F(FrameSilence, IsTold) {
  system->folderCreationWorks = false;
  system->locale.decimalSeparator.clear();
  std::string path = "C:\\none\\";
  std::string separator;
  expectHeard({
      {"GetSpecialFolder: the system knows no folder of the kind 17",
       [] { EXPECT_EQ(GetSpecialFolder(17), ""); }},
      {"CreatePath: the folder 'C:\\none\\' cannot be made", [&] { EXPECT_FALSE(CreatePath(path)); }},
      {"LaunchHelp: no control of the window holds the focus",
       [] { LaunchHelp(keyCode::f1, keyModifier::control, false, "Page"); }},
      {"FolderExist: the system fails",
       [this] {
         system->everythingFails = true;
         EXPECT_FALSE(FolderExist("C:\\none"));
         system->everythingFails = false;
       }},
  });
}

}  // namespace
}  // namespace vlclientui::test
