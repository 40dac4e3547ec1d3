#include <string>

#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"
#include "platform/TemporaryFolder.h"

namespace vlclientui::platform {
namespace {

using namespace std::string_literals;

class XmlFile : public TemporaryFolder {
 protected:
  [[nodiscard]] std::unique_ptr<XmlDocument> document() const {
    return LibXmlService(PathTranslation(folder_)).createDocument();
  }
  [[nodiscard]] bool loads(std::string_view content) const {
    write("probe", content);
    return document()->load(path("probe"));
  }
};

TEST_F(XmlFile, LoadsByEitherKindOfPath) {
  write("VLClient.XADef", "<a/>");
  EXPECT_TRUE(document()->load(path("VLClient.XADef")));
  EXPECT_TRUE(document()->load("C:\\VLClient.XADef "));
  EXPECT_FALSE(document()->load("C:\\vlclient.xadef"));
}

TEST_F(XmlFile, WhatIsNoReadableFileDoesNotLoadAndEmptiesTheDocument) {
  const auto loaded = document();
  for (const char* path : {"C:\\missing", "D:\\x", "C:\\", "", "C:\\missing\\x"}) {
    ASSERT_TRUE(loaded->loadXml("<a/>"));
    EXPECT_FALSE(loaded->load(path)) << path;
    EXPECT_EQ(loaded->xml(), "");
  }
  EXPECT_FALSE(loaded->load("C:\\x\0y"s));
}

TEST_F(XmlFile, EmptyAndMalformedFilesDoNotLoad) {
  EXPECT_FALSE(loads(""));
  EXPECT_FALSE(loads(" \n"));
  EXPECT_FALSE(loads("<a>"));
  EXPECT_FALSE(loads("<p:a/>"));
  EXPECT_FALSE(loads("<a>\xE9</a>"));
  EXPECT_FALSE(loads("<a/>\0"s));
  EXPECT_FALSE(loads("<a/>\0<b"s));
  EXPECT_FALSE(loads("<a>\0</a>"s));
  EXPECT_FALSE(loads("\xFF\xFE<\0a\0/\0>\0\0\0"s));
  EXPECT_FALSE(loads("<?xml version='1.0' encoding='no-such-code'?><a/>"));
  EXPECT_FALSE(loads("<?xml version='1.0' encoding='utf-16'?><a/>"));
}

TEST_F(XmlFile, TheDeclaredEncodingOfAFileCounts) {
  const auto loaded = document();
  write("latin", "<?xml version='1.0' encoding='iso-8859-1'?><a>\xE9</a>");
  ASSERT_TRUE(loaded->load("C:\\latin"));
  EXPECT_EQ(loaded->xml(), "<a>\xC3\xA9</a>");
  write("wide", "\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"s);
  ASSERT_TRUE(loaded->load("C:\\wide"));
  EXPECT_EQ(loaded->xml(), "<a>\xC3\xA9</a>");
  write("marked", "\xEF\xBB\xBF<a>\xC3\xA9</a>");
  ASSERT_TRUE(loaded->load("C:\\marked"));
  EXPECT_EQ(loaded->xml(), "<a>\xC3\xA9</a>");
}

TEST_F(XmlFile, FilesBesideAreNotRead) {
  write("secret", "told");
  EXPECT_FALSE(loads("<!DOCTYPE a [<!ENTITY e SYSTEM 'secret'>]><a>&e;</a>"));
  write("other.dtd", "<!ENTITY e 'told'>");
  EXPECT_FALSE(loads("<!DOCTYPE a SYSTEM 'other.dtd'><a>&e;</a>"));
}

TEST_F(XmlFile, SavesInUtf8WhatLoadsTheSame) {
  const auto saved = document();
  ASSERT_TRUE(saved->loadXml("<?xml version='1.0' encoding='utf-16'?><a b='\xE2\x82\xAC'> x <c/></a>"));
  saved->save("C:\\out.xml");
  EXPECT_EQ(read("out.xml"), "<a b=\"\xE2\x82\xAC\"> x <c/></a>");
  const auto again = document();
  ASSERT_TRUE(again->load(path("out.xml")));
  EXPECT_EQ(again->xml(), saved->xml());
}

TEST_F(XmlFile, ASaveThatFailsIsAFailureAndLeavesNothing) {
  const auto saved = document();
  ASSERT_TRUE(saved->loadXml("<a/>"));
  EXPECT_THROW(saved->save("C:\\missing\\out.xml"), RuntimeFailure);
  EXPECT_THROW(saved->save("D:\\out.xml"), RuntimeFailure);
  EXPECT_THROW(saved->save(""), RuntimeFailure);
  EXPECT_TRUE(names().empty());
}

TEST_F(XmlFile, AnEmptyDocumentIsNotSavedAndLeavesTheOldFile) {
  write("out.xml", "<old/>");
  const auto empty = document();
  EXPECT_THROW(empty->save("C:\\out.xml"), RuntimeFailure);
  for (const char* const text : {"", " ", "<a>", "no document", "<!-- alone -->"}) {
    const auto unparsed = document();
    ASSERT_TRUE(unparsed->loadXml("<before/>"));
    ASSERT_FALSE(unparsed->loadXml(text));
    EXPECT_THROW(unparsed->save("C:\\out.xml"), RuntimeFailure) << text;
    EXPECT_THROW(unparsed->save("C:\\new.xml"), RuntimeFailure) << text;
  }
  EXPECT_EQ(read("out.xml"), "<old/>");
  EXPECT_EQ(names().size(), 1U);
}

}  // namespace
}  // namespace vlclientui::platform
