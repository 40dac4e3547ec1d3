#include "platform/PathTranslation.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::platform {
namespace {

const PathTranslation translations("/home/u");

TEST(PathTranslation, DriveCIsTheHomeFolderAndDriveZTheRoot) {
  EXPECT_EQ(translations.toNative("C:\\x\\y.txt"), "/home/u/x/y.txt");
  EXPECT_EQ(translations.toNative("c:\\x"), "/home/u/x");
  EXPECT_EQ(translations.toNative("C:x"), "/home/u/x");
  EXPECT_EQ(translations.toNative("\\x"), "/home/u/x");
  EXPECT_EQ(translations.toNative("C:\\"), "/home/u/");
  EXPECT_EQ(translations.toNative("Z:\\etc\\fstab"), "/etc/fstab");
  EXPECT_EQ(translations.toNative("z:\\"), "/");
}

TEST(PathTranslation, TrailingBlanksOfAComponentMeanNothing) {
  EXPECT_EQ(translations.toNative("C:\\x\\VLClient.XADef "), "/home/u/x/VLClient.XADef");
  EXPECT_EQ(translations.toNative("C:\\x \\y  \\z"), "/home/u/x/y/z");
  EXPECT_EQ(translations.toNative("C:\\ x"), "/home/u/ x");
  EXPECT_EQ(translations.toNative("C:\\a b\\c"), "/home/u/a b/c");
}

TEST(PathTranslation, AComponentOfBlanksIsNoFolder) {
  EXPECT_EQ(translations.toNative("C:\\x \\ "), "/home/u/x/");
  EXPECT_EQ(translations.toNative("C:\\x\\ \\y"), "/home/u/x/y");
  EXPECT_EQ(translations.toNative("C:\\ "), "/home/u/");
}

TEST(PathTranslation, ATrailingSeparatorIsKeptOnce) {
  EXPECT_EQ(translations.toNative("C:\\x\\\\"), "/home/u/x/");
  EXPECT_EQ(translations.toNative("C:\\x"), "/home/u/x");
}

TEST(PathTranslation, ParentsNeverLeadOutOfTheDrive) {
  EXPECT_EQ(translations.toNative("C:\\a\\..\\b\\.\\c"), "/home/u/b/c");
  EXPECT_EQ(translations.toNative("C:\\..\\..\\x"), "/home/u/x");
  EXPECT_EQ(translations.toLogic("/home/u/../v"), "Z:\\home\\v");
}

TEST(PathTranslation, HostsAndRelativePathsOnlyTurnTheirSlashes) {
  EXPECT_EQ(translations.toNative("\\\\host\\share\\f"), "//host/share/f");
  EXPECT_EQ(translations.toNative("a\\b"), "a/b");
  EXPECT_EQ(translations.toNative("a \\b\\"), "a/b/");
  EXPECT_EQ(translations.toNative(".."), "..");
  EXPECT_EQ(translations.toLogic("a/b"), "a\\b");
  EXPECT_EQ(translations.toLogic("//host/share"), "\\\\host\\share");
  EXPECT_EQ(translations.toNative(""), "");
  EXPECT_EQ(translations.toLogic(""), "");
}

TEST(PathTranslation, PathsOfTheTargetKindPassUnchanged) {
  EXPECT_EQ(translations.toNative("/etc/a \\b "), "/etc/a \\b ");
  EXPECT_EQ(translations.toLogic("D:\\x \\ "), "D:\\x \\ ");
  EXPECT_EQ(translations.toLogic("\\\\host\\share"), "\\\\host\\share");
}

TEST(PathTranslation, NativePathsLieBelowTheHomeFolderOrTheRoot) {
  EXPECT_EQ(translations.toLogic("/home/u/x"), "C:\\x");
  EXPECT_EQ(translations.toLogic("/home/u//x/"), "C:\\x\\");
  EXPECT_EQ(translations.toLogic("/home/u"), "C:\\");
  EXPECT_EQ(translations.toLogic("/home/u/"), "C:\\");
  EXPECT_EQ(translations.toLogic("/home/user/x"), "Z:\\home\\user\\x");
  EXPECT_EQ(translations.toLogic("/home"), "Z:\\home");
  EXPECT_EQ(translations.toLogic("/"), "Z:\\");
}

TEST(PathTranslation, WhatCanBeSaidInLogicComesBackTheSame) {
  for (const char* native :
       {"/home/u/x/y.tif", "/etc/passwd", "/home/u/a b/ c", "/", "/home/u/", "/srv/x/"}) {
    EXPECT_EQ(translations.toNative(translations.toLogic(native)), native);
  }
}

TEST(PathTranslation, RefusesUnknownDrivesAndNulCharacters) {
  EXPECT_THROW((void)translations.toNative("D:\\x"), RuntimeFailure);
  EXPECT_THROW((void)translations.toNative(std::string_view("C:\\x\0y", 6)), RuntimeFailure);
  EXPECT_THROW((void)translations.toLogic(std::string_view("/x\0y", 4)), RuntimeFailure);
}

TEST(PathTranslation, RefusesNativeNamesThatWouldNotFindTheWayBack) {
  EXPECT_THROW((void)translations.toLogic("/home/u/a\\b"), RuntimeFailure);
  EXPECT_THROW((void)translations.toLogic("/home/u/a /b"), RuntimeFailure);
}

TEST(PathTranslation, AHomeFolderAtTheRootTakesDriveCForEverything) {
  const PathTranslation paths("/");
  EXPECT_EQ(paths.toNative("C:\\x"), "/x");
  EXPECT_EQ(paths.toLogic("/x"), "C:\\x");
}

TEST(PathTranslation, TheUsersHomeFolderComesFromTheEnvironment) {
  ASSERT_EQ(setenv("HOME", "/somewhere/else/", 1), 0);
  EXPECT_EQ(PathTranslation::ofUser().homeFolder(), "/somewhere/else");
}

}  // namespace
}  // namespace vlclientui::platform
