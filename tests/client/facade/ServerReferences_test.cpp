// References to services of servers that are named by whole addresses, in files of references.
#include <string>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/facade/ServerRequest.h"
#include "client/facade/ServiceReference.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

class ServerReferences : public test::RasterFixture {
 protected:
  [[nodiscard]] ServiceReference again(const ServiceReference& reference) const {
    return readServiceReference(writeText("a.VLRef", serviceReferenceDocument(reference, xml())), xml());
  }
};

class AddressReferences : public ServerReferences, public testing::WithParamInterface<const char*> {};

TEST_P(AddressReferences, StayAsTheyAreInEveryKindOfFile) {
  const std::string reference = GetParam();
  EXPECT_EQ(readServiceReference(writeText("bare.VLRef", reference + "\r\n"), xml()).reference, reference);
  EXPECT_EQ(again({reference, ""}).reference, reference);
  EXPECT_EQ(again({reference, ""}).properties, "");
  EXPECT_EQ(referenceSeenFrom("/maps", reference, ""), reference);
  EXPECT_EQ(referenceSeenFrom("/maps", reference, "/maps/a.tif"), reference);
  EXPECT_EQ(definitionPath(reference), std::nullopt);
  EXPECT_FALSE(isReferenceFile(reference));
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, AddressReferences,
    testing::Values("ImageService://https://maps.example/wcs/World/Geoid",
                    "ImageService://https://maps.example:8443/wcs/World",
                    "ImageService://http://[::1]:8080/wcs/World", "ImageService://http://[2001:db8::a]/World",
                    "ImageService://https://maps.example/cgi?map=a&b=%20c/World",
                    "IMAGESERVICE://HTTPS://MAPS.EXAMPLE/World", "ImageService://maps.example:8080/World",
                    "ImageService://Home maps/World/a & b <c> \"d\"",
                    "ImageService://https://maps.example/a.VLRef", "ImageService://127.0.0.1/../World",
                    "ImageService://https://maps.example/Z\xC3\xBCrich", "https://maps.example/maps/a.tif"));

TEST_F(ServerReferences, ToAReferenceFileOfTheWebAreNotFollowed) {
  EXPECT_TRUE(isReferenceFile("https://maps.example/a.VLRef"));
  EXPECT_THROW((void)readServiceReference(writeText("a.VLRef", "https://maps.example/b.VLRef"), xml()),
               RuntimeFailure);
}

TEST_F(ServerReferences, AreTheFirstOfADocumentThatHasMany) {
  const std::string text =
      "<Vorlane><ImageServiceReference>ImageService://https://a/1</ImageServiceReference>"
      "<ImageServiceReference>ImageService://https://b/2</ImageServiceReference></Vorlane>";
  EXPECT_EQ(readServiceReference(writeText("a.VLRef", text), xml()).reference, "ImageService://https://a/1");
}

TEST_F(ServerReferences, OfAnElementElsewhereInADocumentAreNone) {
  for (const char* const text :
       {"<Other><ImageServiceReference>ImageService://a/b</ImageServiceReference></Other>",
        "<Vorlane><Client><ImageServiceReference>ImageService://a/b"
        "</ImageServiceReference></Client></Vorlane>",
        "<vorlane><imageservicereference>a</imageservicereference></vorlane>",
        "<Vorlane><ImageServiceReference> \n </ImageServiceReference></Vorlane>"}) {
    EXPECT_THROW((void)readServiceReference(writeText("a.VLRef", text), xml()), RuntimeFailure) << text;
  }
}

TEST_F(ServerReferences, KeepNoPropertiesThatAreNoDocument) {
  for (const char* const properties : {"", "<Vorlane", "<Other><NoData>1</NoData></Other>", "<Vorlane/>"}) {
    EXPECT_EQ(again({"ImageService://https://a/b", properties}).properties, "") << properties;
  }
  const std::string sound =
      "<Vorlane><ImageServiceProperties><Remark>a &amp; "
      "&lt;b&gt;</Remark></ImageServiceProperties></Vorlane>";
  EXPECT_EQ(again({"ImageService://https://a/b", sound}).properties, sound);
}

TEST_F(ServerReferences, OfARequestMayBeWholeAddresses) {
  const auto server = [this](const std::string& text) {
    return serverOfRequest("<Vorlane><Client><ServerInfo><Request><Server>" + text +
                               "</Server></Request></ServerInfo></Client></Vorlane>",
                           xml());
  };
  EXPECT_EQ(server("https://maps.example/cgi?map=a&amp;b=c"), "https://maps.example/cgi?map=a&b=c");
  EXPECT_EQ(server("\n http://[::1]:8080/wcs \t"), "http://[::1]:8080/wcs");
  EXPECT_EQ(server("<![CDATA[https://maps.example/a b]]>"), "https://maps.example/a b");
  EXPECT_THROW((void)server("https://maps.example/cgi?map=a&b=c"), RuntimeFailure) << "an unknown entity";
}

}  // namespace
}  // namespace vlclientui::client
