#include "client/facade/ServiceReference.h"

#include <string>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/facade/ServerRequest.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class References : public test::RasterFixture {
 protected:
  /// The reference that a file with this text holds, or the failure.
  [[nodiscard]] std::string read(const std::string& text, const std::string& name = "a.VLRef") const {
    try {
      return readServiceReference(writeText(name, text), xml()).reference;
    } catch (const RuntimeFailure& failure) {
      return "refused: " + failure.description().substr(failure.description().find(name) + name.size());
    }
  }

  [[nodiscard]] static std::string document(const std::string& reference, const std::string& more = {}) {
    return "<Vorlane><ImageServiceReference>" + reference + "</ImageServiceReference>" + more + "</Vorlane>";
  }

  [[nodiscard]] std::string whole(const std::string& name) const { return (folder() / name).string(); }
};

TEST_F(References, AreTheFirstLineOfABareFile) {
  EXPECT_EQ(read("ImageService://localhost/a"), "ImageService://localhost/a");
  EXPECT_EQ(read("\n  ImageService://localhost/a  \r\nmore\n"), "ImageService://localhost/a");
  EXPECT_EQ(read("\xEF\xBB\xBFImageService://localhost/a"), "ImageService://localhost/a");
}

TEST_F(References, AreAnElementOfADocument) {
  EXPECT_EQ(read(document(" ImageService://localhost/a ")), "ImageService://localhost/a");
  EXPECT_EQ(read("<?xml version='1.0' encoding='iso-8859-1'?>" + document("ImageService://localhost/\xE9")),
            "ImageService://localhost/\xC3\xA9");
}

TEST_F(References, BringTheirPropertiesAlong) {
  const std::string properties = "<ImageServiceProperties><NoData>7</NoData></ImageServiceProperties>";
  const auto found = readServiceReference(writeText("a.VLRef", document("/x.tif", properties)), xml());
  EXPECT_EQ(found.properties, "<Vorlane>" + properties + "</Vorlane>");
  EXPECT_EQ(readServiceReference(writeText("b.VLRef", document("/x.tif")), xml()).properties, "");
}

TEST_F(References, OfRelativePathsCountFromTheirFile) {
  EXPECT_EQ(read("b.tif"), whole("b.tif"));
  EXPECT_EQ(read("sub/../b.tif"), whole("b.tif"));
  EXPECT_EQ(read("VLDef://m.VLDef"), "VLDef://" + whole("m.VLDef"));
  EXPECT_EQ(read("vldef://m.VLDef"), "VLDef://" + whole("m.VLDef"));
}

TEST_F(References, OfWholePathsAndServersStayAsTheyAre) {
  for (const char* text : {"/data/b.tif", "C:\\data\\b.tif", "\\\\host\\b.tif", "VLDef:///data/m.VLDef",
                           "VLDef://C:\\m.VLDef", "ImageService://host/a", "imageservice://host/a"}) {
    EXPECT_EQ(read(text), text);
  }
}

TEST_F(References, ThatLeadNowhereAreRefused) {
  EXPECT_EQ(read(""), "refused:  names no image service");
  EXPECT_EQ(read(" \n "), "refused:  names no image service");
  EXPECT_EQ(read("<Vorlane/>"), "refused:  names no image service");
  EXPECT_EQ(read("<Vorlane"), "refused:  names no image service");
  EXPECT_EQ(read("other.VLRef"), "refused:  names another reference file instead of a service");
  EXPECT_EQ(read(std::string((1U << 20U) + 1, 'x')), "refused:  cannot be read");
  EXPECT_THROW((void)readServiceReference(folder() / "missing.VLRef", xml()), RuntimeFailure);
}

TEST_F(References, AreInFilesOfTheirOwnEndingOrInDocuments) {
  EXPECT_TRUE(isReferenceFile("a.VLRef"));
  EXPECT_TRUE(isReferenceFile("C:\\a.vlREF"));
  EXPECT_FALSE(isReferenceFile("a.VLRef.tif"));
  const fs::path document = writeText("a.xml", References::document("/b.tif"));
  EXPECT_TRUE(isReferenceFile("a.xml", document, xml()));
  EXPECT_TRUE(isReferenceFile("A.XML", document, xml()));
  EXPECT_FALSE(isReferenceFile("a.tif", document, xml()));
  EXPECT_FALSE(isReferenceFile("b.xml", writeText("b.xml", "<Other/>"), xml()));
  EXPECT_FALSE(isReferenceFile("c.xml", folder() / "c.xml", xml()));
}

TEST_F(References, NameADefinitionBehindTheirScheme) {
  EXPECT_EQ(definitionPath("VLDef://C:\\m.VLDef"), "C:\\m.VLDef");
  EXPECT_EQ(definitionPath("vlDEF://"), "");
  EXPECT_EQ(definitionPath("ImageService://a/b"), std::nullopt);
  EXPECT_EQ(definitionPath("/m.VLDef"), std::nullopt);
}

TEST_F(References, SeenFromAFolderAreRelativeBelowItOnly) {
  EXPECT_EQ(referenceSeenFrom("/a", "/a/b/c.tif", "/a/b/c.tif"), "b/c.tif");
  EXPECT_EQ(referenceSeenFrom("/a/b", "/a/b/c.tif", "/a/b/c.tif"), "c.tif");
  EXPECT_EQ(referenceSeenFrom("/a", "VLDef:///a/m.VLDef", "/a/m.VLDef"), "VLDef://m.VLDef");
  EXPECT_EQ(referenceSeenFrom("/x", "/a/c.tif", "/a/c.tif"), "/a/c.tif");
  EXPECT_EQ(referenceSeenFrom("/x", "C:\\c.tif", "/home/c.tif"), "C:\\c.tif");
  EXPECT_EQ(referenceSeenFrom("/a", "ImageService://h/n", "/a/n.tif"), "ImageService://h/n");
  EXPECT_EQ(referenceSeenFrom("/a", "/a/c.tif", ""), "/a/c.tif");
}

TEST_F(References, ThatWereRelativeElsewhereBecomeWhole) {
  const std::string here = (fs::current_path() / "c.tif").string();
  EXPECT_EQ(referenceSeenFrom("/x", "c.tif", "c.tif"), here);
  EXPECT_EQ(referenceSeenFrom("/x", "VLDef://c.tif", "c.tif"), "VLDef://" + here);
}

TEST_F(References, AreWrittenSoThatTheyAreReadBack) {
  const ServiceReference reference{
      "ImageService://h/a & <b>",
      "<Vorlane><ImageServiceProperties><NoData>1</NoData></ImageServiceProperties></Vorlane>"};
  const auto again =
      readServiceReference(writeText("a.VLRef", serviceReferenceDocument(reference, xml())), xml());
  EXPECT_EQ(again.reference, reference.reference);
  EXPECT_EQ(again.properties, reference.properties);
  EXPECT_EQ(serviceReferenceDocument({"/a", "no properties"}, xml()),
            "<Vorlane>\n<ImageServiceReference>/a</ImageServiceReference>\n</Vorlane>\n");
}

TEST_F(References, OfServersStandInRequests) {
  const auto request = [](const std::string& server) {
    return "<Vorlane><Client><ServerInfo><Request>" + server + "</Request></ServerInfo></Client></Vorlane>";
  };
  EXPECT_EQ(serverOfRequest(request("<Server> host </Server>"), xml()), "host");
  EXPECT_EQ(serverOfRequest(request("<Server/>"), xml()), "");
  EXPECT_EQ(serverOfRequest(request(""), xml()), "");
  EXPECT_EQ(serverOfRequest("<Other/>", xml()), "");
  EXPECT_THROW((void)serverOfRequest("", xml()), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
