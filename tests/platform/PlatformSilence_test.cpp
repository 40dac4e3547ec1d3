// A folder that the system cannot make leaves its trace, with the system's own words.

#include <fstream>

#include "platform/PosixSystem.h"
#include "support/HeardSilence.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::test {
namespace {

TEST(PlatformSilence, TellsWhyAFolderCannotBeMade) {
  const TemporaryFolder folder;
  std::ofstream(folder.path() / "file") << "x";
  platform::PosixSystem::Settings settings;
  settings.paths = platform::PathTranslation(folder.path().string());
  platform::PosixSystem system(std::move(settings));
  expectHeard({{"PosixSystem::makeSureDirectoryPathExists: the folder '" +
                    (folder.path() / "file/below/").string() + "' cannot be made: Not a directory",
                [&] { EXPECT_FALSE(system.makeSureDirectoryPathExists("C:\\file\\below\\")); }}});
}

}  // namespace
}  // namespace vlclientui::test
