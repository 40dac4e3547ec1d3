#include "documents/HelpBlock.h"

#include <gtest/gtest.h>

#include "platform/LibXmlService.h"

namespace vlclientui {
namespace {

const platform::LibXmlService service{platform::PathTranslation("/")};

TEST(HelpBlock, StandsBelowTheRootOfAWholeDocument) {
  EXPECT_EQ(withHelpBlock(service, "<Vorlane><A/></Vorlane>"),
            "<Vorlane><A/><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane>");
}

TEST(HelpBlock, GrowsWhenADocumentPassesTwice) {
  EXPECT_EQ(withHelpBlock(service, withHelpBlock(service, "<Vorlane/>")),
            "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path>"
            "<HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF><X_DEF/></Vorlane>");
}

TEST(HelpBlock, ServiceMetadataTakesItBelowItsOwnRoot) {
  EXPECT_EQ(withHelpBlock(service, "<Metadata/>", serviceMetadataRoot),
            "<Metadata><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Metadata>");
}

TEST(HelpBlock, ADocumentWithoutTheRootStaysAsItWasToTheLetter) {
  const std::string text = "<Other  a='1'></Other>";
  EXPECT_EQ(withHelpBlock(service, text), text);
  EXPECT_EQ(withHelpBlock(service, text, serviceMetadataRoot), text);
}

TEST(HelpBlock, ATextThatDoesNotParseStaysAsItWas) {
  EXPECT_EQ(withHelpBlock(service, "<Vorlane>"), "<Vorlane>");
  EXPECT_EQ(withHelpBlock(service, ""), "");
}

TEST(HelpBlock, TheRootMayStandAnywhere) {
  EXPECT_EQ(withHelpBlock(service, "<a><Vorlane/></a>"),
            "<a><Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane></a>");
}

TEST(HelpBlock, ThePathGoesIntoTheFirstBlockOfTheDocumentWhereverThatStands) {
  EXPECT_EQ(withHelpBlock(service, "<Vorlane><A><Vorlane><X_DEF/></Vorlane></A></Vorlane>"),
            "<Vorlane><A><Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane></A>"
            "<X_DEF/></Vorlane>");
}

TEST(HelpBlock, AnOpenDocumentTakesItInPlace) {
  const auto document = service.createDocument();
  ASSERT_TRUE(document->loadXml("<Vorlane/>"));
  addHelpBlock(*document);
  EXPECT_EQ(document->xml(), "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane>");
}

TEST(HelpBlock, AnEmptyDocumentTakesNone) {
  const auto document = service.createDocument();
  addHelpBlock(*document);
  EXPECT_EQ(document->xml(), "");
}

TEST(HelpBlock, HeadsADocumentAroundAFragment) {
  EXPECT_EQ(helpDocumentAround("<Info/>"),
            "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF><Info/></Vorlane>");
}

TEST(HelpBlock, AFormDefinitionIsWrappedWithoutIt) {
  EXPECT_EQ(plainDocumentAround("<Info/>"), "<Vorlane><Info/></Vorlane>");
}

}  // namespace
}  // namespace vlclientui
