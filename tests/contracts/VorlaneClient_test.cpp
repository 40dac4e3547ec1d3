#include "contracts/VorlaneClient.h"

#include <gtest/gtest.h>

#include "contracts/Boolean16.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui {
namespace {

class NamedObject : public Object {
 public:
  explicit NamedObject(std::string name) : name_(std::move(name)) {}
  std::string typeName() const override { return name_; }

 private:
  std::string name_;
};

TEST(ImageServiceGeneration, IsNewerForItsTypeNameInAnyCase) {
  for (const char* const name :
       {"IOVLImageService", "iovlimageservice", "IOVLIMAGESERVICE", "iOvLiMaGeSeRvIcE"}) {
    EXPECT_TRUE(isNewerGeneration(NamedObject(name))) << name;
  }
}

TEST(ImageServiceGeneration, IsOlderForEveryOtherTypeName) {
  for (const char* const name :
       {"IImageService", "", "IOVLImageService2", " IOVLImageService", "IOVLServerClient"}) {
    EXPECT_FALSE(isNewerGeneration(NamedObject(name))) << name;
  }
}

TEST(PropertyPages, HaveTheirFixedNumbers) {
  EXPECT_EQ(static_cast<int>(PropertyPageId::PropertyPageMetadata), 1);
  EXPECT_EQ(static_cast<int>(PropertyPageId::PropertyPageProperties), 2);
  EXPECT_EQ(static_cast<int>(PropertyPageId::PropertyPageViewPoint), 3);
}

TEST(Boolean16Values, AreMinusOneAndZero) {
  EXPECT_EQ(toBoolean16(true), -1);
  EXPECT_EQ(toBoolean16(false), 0);
  EXPECT_EQ(sizeof(Boolean16), 2U);
}

TEST(RuntimeFailures, CarryTheirDescriptionAndKind) {
  const auto kindOf = [](void (*fail)(const std::string&)) {
    try {
      fail("thing");
    } catch (const RuntimeFailure& failure) {
      EXPECT_NE(failure.description().find("thing"), std::string::npos);
      return failure.kind();
    }
    return FailureKind::General;
  };
  EXPECT_EQ(kindOf(failTypeMismatch), FailureKind::TypeMismatch);
  EXPECT_EQ(kindOf(failOverflow), FailureKind::Overflow);
  EXPECT_EQ(kindOf(failMissingObject), FailureKind::MissingObject);
  EXPECT_EQ(RuntimeFailure("thing").kind(), FailureKind::General);
}

TEST(ClientContracts, AreKnownByTheNamesThatTheyAreFoundBy) {
  struct Older : IServerClient {
    std::string GetServerInfo(const std::string&) override { return {}; }
  };
  struct Newer : IOVLServerClient {
    std::string GetServerInfo(const std::string&) override { return {}; }
  };
  struct Callback : IServicePropertiesCallback {
    void OnServicePropertiesChanged(const std::string&) override {}
  };
  EXPECT_EQ(Older().typeName(), IServerClient::interfaceName);
  EXPECT_EQ(Newer().typeName(), IOVLServerClient::interfaceName);
  EXPECT_EQ(Callback().typeName(), IServicePropertiesCallback::interfaceName);
}

TEST(ClientContracts, ShowAServerAsItWasTypedUnlessALibraryKnowsOfSecrets) {
  struct PlainLibrary : ClientLibrary {
    std::unique_ptr<InstallPaths> createInstallPaths() override { return nullptr; }
    std::unique_ptr<ClientStatus> createClientStatus() override { return nullptr; }
  };
  EXPECT_EQ(PlainLibrary().serverToShow("https://maps.example/wcs"), "https://maps.example/wcs");
}

}  // namespace
}  // namespace vlclientui
