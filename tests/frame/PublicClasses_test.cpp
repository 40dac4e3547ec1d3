#include "frame/PublicClasses.h"

#include <algorithm>
#include <cctype>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlclientui {
namespace {

using testing::ElementsAre;

template <class Field>
std::vector<std::string> column(Field field) {
  std::vector<std::string> values;
  for (const PublicClass& entry : publicClasses()) values.emplace_back(field(entry));
  return values;
}

std::vector<std::string> interfacesOf(std::string_view name) {
  const PublicClass* const found = findPublicClass(name);
  std::vector<std::string> interfaces{std::string(found->defaultInterface)};
  for (const std::string_view further : found->furtherInterfaces) {
    if (!further.empty()) interfaces.emplace_back(further);
  }
  return interfaces;
}

TEST(PublicClasses, AreSevenInTheOrderOfTheTypeLibrary) {
  EXPECT_THAT(column([](const PublicClass& entry) { return entry.name; }),
              ElementsAre("ImageServicesControl", "ServicePropertiesDialog", "ImageServicesDialog",
                          "ExportDialog", "ExportControl", "ServiceFolders", "Envelope"));
}

TEST(PublicClasses, HaveTheirKinds) {
  const auto kindOf = [](std::string_view name) { return findPublicClass(name)->kind; };
  for (const auto* const name : {"ImageServicesControl", "ExportControl"}) {
    EXPECT_EQ(kindOf(name), ClassKind::Control) << name;
  }
  for (const auto* const name : {"ServicePropertiesDialog", "ImageServicesDialog", "ExportDialog"}) {
    EXPECT_EQ(kindOf(name), ClassKind::CreatableGlobalClass) << name;
  }
  for (const auto* const name : {"ServiceFolders", "Envelope"}) {
    EXPECT_EQ(kindOf(name), ClassKind::HelperClass) << name;
  }
}

TEST(PublicClasses, HaveIdentitiesThatNeverChange) {
  // Registration files of users hold these: a changed identity breaks them.
  EXPECT_THAT(column([](const PublicClass& entry) { return entry.classIdentity; }),
              ElementsAre("{DBF309B8-1E16-450F-ABB5-2DADCA37234E}", "{E3A5644A-5AFF-440A-BB2A-D72ECF18F882}",
                          "{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76}", "{F356F710-1DCF-4843-B16B-05090E97C61D}",
                          "{98087A02-99BF-4602-AD8A-E9FA220DB401}", "{DEF6741B-DC32-4E7F-B6FD-1DB5592A0FD2}",
                          "{0C1E5E87-93A5-4BB7-B48A-813B8CEE97E6}"));
}

TEST(PublicClasses, HaveIdentitiesThatAreWellFormedAndDiffer) {
  const std::regex form("\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}");
  std::set<std::string> seen;
  for (const std::string& identity : column([](const PublicClass& entry) { return entry.classIdentity; })) {
    EXPECT_TRUE(std::regex_match(identity, form)) << identity;
    EXPECT_TRUE(seen.insert(identity).second) << identity;
  }
}

TEST(PublicClasses, HaveTheirInterfacesTheDefaultOneFirst) {
  EXPECT_THAT(interfacesOf("ImageServicesControl"), ElementsAre("_ImageServicesControl"));
  EXPECT_THAT(interfacesOf("ServicePropertiesDialog"),
              ElementsAre("_ServicePropertiesDialog", "IServicePropertiesDialog",
                          "IOVLServicePropertiesDialog", "IOVLServicePropertiesDialog2"));
  EXPECT_THAT(interfacesOf("ImageServicesDialog"),
              ElementsAre("_ImageServicesDialog", "IImageServicesDialog", "IOVLImageServicesDialog"));
  EXPECT_THAT(interfacesOf("ExportDialog"), ElementsAre("_ExportDialog", "IExportImageDialog"));
  EXPECT_THAT(interfacesOf("ExportControl"), ElementsAre("_ExportControl"));
  EXPECT_THAT(interfacesOf("ServiceFolders"), ElementsAre("_ServiceFolders"));
  EXPECT_THAT(interfacesOf("Envelope"), ElementsAre("_Envelope"));
}

TEST(PublicClasses, HaveTheirOutgoingEvents) {
  EXPECT_THAT(
      column([](const PublicClass& entry) { return entry.eventInterface; }),
      ElementsAre("__ImageServicesControl", "__ServicePropertiesDialog", "", "", "__ExportControl", "", ""));
  EXPECT_THAT(column([](const PublicClass& entry) { return entry.event; }),
              ElementsAre("abc", "OnAccept", "", "", "", "", ""));
}

TEST(PublicClasses, AreFoundByNameAndByIdentityInAnyCase) {
  for (const PublicClass& entry : publicClasses()) {
    EXPECT_EQ(findPublicClass(entry.name), &entry);
    std::string identity(entry.classIdentity);
    EXPECT_EQ(findPublicClass(identity), &entry);
    std::ranges::transform(identity, identity.begin(), [](unsigned char c) { return std::tolower(c); });
    EXPECT_EQ(findPublicClass(identity), &entry);
  }
}

TEST(PublicClasses, AreNotFoundByAnythingElse) {
  for (const char* const text :
       {"", "imageservicesdialog", "ImageServicesDialogForm", "_ImageServicesDialog",
        "66CEF2DE-E800-4B43-83E0-4CE5F2DE1E76", "{66CEF2DE-E800-4B43-83E0-4CE5F2DE1E77}"}) {
    EXPECT_EQ(findPublicClass(text), nullptr) << text;
  }
}

}  // namespace
}  // namespace vlclientui
