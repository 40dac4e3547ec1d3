#include "selection/SettingsDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const folder = "C:\\Documents\\Ostrel\\Vor Lane";

class SettingsDocumentTest : public SelectionTest {
 protected:
  static std::vector<std::string> numbered(int count) {
    std::vector<std::string> servers;
    for (int i = 1; i <= count; ++i) servers.push_back("server" + std::to_string(i));
    return servers;
  }

  [[nodiscard]] std::vector<std::string> readAfter(const std::string& text) const {
    system->writeFile(settingsFile, text);
    return readMruServers(folder);
  }
};

TEST_F(SettingsDocumentTest, ServersAreReadInFileOrderFromIndexOneOn) {
  EXPECT_THAT(readAfter(settingsWith({"b", "a", "b", ""})), ElementsAre("b", "a", "b", ""));
}

TEST_F(SettingsDocumentTest, TheFirstChildIsNotReadWhateverItIs) {
  EXPECT_THAT(readAfter("<Vorlane><Client><ShowImageServicesDialog><MruServers><ServerName>lost</ServerName>"
                        "<Other>kept</Other></MruServers></ShowImageServicesDialog></Client></Vorlane>"),
              ElementsAre("kept"));
}

TEST_F(SettingsDocumentTest, NoFileOrABrokenOneOrOneWithoutTheListGivesNoServers) {
  EXPECT_THAT(readMruServers(folder), IsEmpty());
  EXPECT_THAT(readAfter(""), IsEmpty());
  EXPECT_THAT(readAfter("<Vorlane>"), IsEmpty());
  EXPECT_THAT(readAfter("<Vorlane/>"), IsEmpty());
  EXPECT_THAT(readAfter(settingsWith({})), IsEmpty());
}

TEST_F(SettingsDocumentTest, SelectedServicesReplaceTheChildrenAndKeepTheAttributesOfTheTemplate) {
  const auto document = parsed(
      "<Vorlane><Client><SelectedImageServices version=\"2\"><Name>old</Name><!-- x --><Other/>"
      "</SelectedImageServices></Client></Vorlane>");
  EXPECT_EQ(writeSelectedServices(*document, {"ImageService://s/a", "C:\\x.VLRef"}),
            "<SelectedImageServices version=\"2\"><Name>ImageService://s/a</Name><Name>C:\\x.VLRef</Name>"
            "</SelectedImageServices>");
  EXPECT_EQ(writeSelectedServices(*document, {}), "<SelectedImageServices version=\"2\"/>");
}

TEST_F(SettingsDocumentTest, ReferencesAreWrittenAsTextInAnyScript) {
  const auto document = parsed(templateXml);
  EXPECT_EQ(writeSelectedServices(*document, {"ImageService://s/R&D <\u5730\u56F3>"}),
            "<SelectedImageServices><Name>ImageService://s/R&amp;D &lt;\u5730\u56F3&gt;</Name>"
            "</SelectedImageServices>");
}

TEST_F(SettingsDocumentTest, ATemplateWithoutTheElementsIsAFailure) {
  const auto document = parsed("<Vorlane/>");
  EXPECT_THROW(static_cast<void>(writeSelectedServices(*document, {})), RuntimeFailure);
  EXPECT_THROW(appendMruServers(*document, {}), RuntimeFailure);
  EXPECT_THROW(saveSettings(*document, folder), RuntimeFailure);
}

TEST_F(SettingsDocumentTest, ServersAreAppendedBehindWhatTheTemplateHoldsAndAtMostTwenty) {
  const auto document = parsed(templateXml);
  appendMruServers(*document, numbered(25));
  const auto children =
      document->selectSingleNode("//Vorlane/Client/ShowImageServicesDialog/MruServers")->childNodes();
  ASSERT_EQ(children.size(), 21U);
  EXPECT_EQ(children[0]->name(), "Placeholder");
  EXPECT_EQ(children[1]->xml(), "<ServerName>server1</ServerName>");
  EXPECT_EQ(children[20]->xml(), "<ServerName>server20</ServerName>");
}

TEST_F(SettingsDocumentTest, TheFileHoldsTheTemplatesElementWithinItsTwoParents) {
  system->writeFile(settingsFile, "an older file that is longer than the new one, by far ................");
  const auto document = parsed(
      "<Vorlane><Client><SelectedImageServices/><ShowImageServicesDialog size=\"3\"><MruServers/><Kept/>"
      "</ShowImageServicesDialog></Client></Vorlane>");
  appendMruServers(*document, {"a"});
  saveSettings(*document, folder);
  EXPECT_EQ(parsed(system->readFile(settingsFile))->xml(),
            "<Vorlane><Client><ShowImageServicesDialog size=\"3\"><MruServers><ServerName>a</ServerName>"
            "</MruServers><Kept/></ShowImageServicesDialog></Client></Vorlane>");
}

TEST_F(SettingsDocumentTest, WhatIsSavedIsReadBackWithOnePlaceholderInTheTemplate) {
  system->writeFile(settingsFile, "<x/>");
  const auto document = parsed(templateXml);
  appendMruServers(*document, {"z\u00FCrich", "127.0.0.1", "a & b"});
  saveSettings(*document, folder);
  EXPECT_THAT(readMruServers(folder), ElementsAre("z\u00FCrich", "127.0.0.1", "a & b"));
}

TEST_F(SettingsDocumentTest, AMissingFolderLosesTheSettingsWithoutAWord) {
  const auto document = parsed(templateXml);
  EXPECT_NO_THROW(saveSettings(*document, "C:\\No\\Such\\Folder"));
  EXPECT_FALSE(std::filesystem::exists(system->nativeFile("C:\\No")));
}

}  // namespace
}  // namespace vlclientui::test
