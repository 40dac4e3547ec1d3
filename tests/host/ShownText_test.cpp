#include "host/ShownText.h"

#include <gtest/gtest.h>

#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

TEST(ShownText, TellsPathsOfThisSystemInPlaceOfDrives) {
  const TemporaryFolder home;
  const EnvironmentKeeper homeVariable("HOME", home.path().string());
  host::HostOptions options;
  options.home = sourceFolder();
  const auto composed = host::composeHeadlessPlatform(options);
  EXPECT_EQ(host::shownText(composed, "The file 'C:\\a.Tif' exists"),
            "The file '" + home.path().string() + "/a.Tif' exists");
  EXPECT_EQ(host::shownText(composed, "<FileName>Z:\\data\\a.Tif</FileName>"),
            "<FileName>/data/a.Tif</FileName>");
  EXPECT_EQ(host::shownText(composed, "no path"), "no path");
}

}  // namespace
}  // namespace vlclientui::test
