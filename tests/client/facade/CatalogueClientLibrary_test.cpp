#include "client/facade/CatalogueClientLibrary.h"

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

class ClientLibraryTest : public test::RasterFixture {
 protected:
  CatalogueClientLibrary library_{xml(), {"Z:\\share\\defs", "Z:\\home", "Z:\\help"}};
};

TEST_F(ClientLibraryTest, FoldersAreAnsweredByKind) {
  const auto paths = library_.createInstallPaths();
  EXPECT_EQ(paths->GetPath(0), "Z:\\share\\defs\\");
  EXPECT_EQ(paths->GetPath(1), "Z:\\home");
  EXPECT_EQ(paths->GetPath(15), "Z:\\help");
}

TEST_F(ClientLibraryTest, UnknownKindOfFolderIsAFailure) {
  const auto paths = library_.createInstallPaths();
  EXPECT_THROW((void)paths->GetPath(2), RuntimeFailure);
}

TEST_F(ClientLibraryTest, StatusReadsAsItsMessages) {
  const auto status = library_.createClientStatus();
  EXPECT_EQ(status->GetText("<Status><Item><Message>One</Message></Item><Item><Message>Two</Message></Item>"
                            "</Status>"),
            "One\nTwo");
  EXPECT_EQ(status->GetText("<Status>Plain</Status>"), "Plain");
  EXPECT_THROW((void)status->GetText("no document"), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
