#include "platform/PosixSystem.h"

#include <cerrno>
#include <chrono>
#include <fstream>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "contracts/RuntimeFailure.h"
#include "platform/HelpLauncher.h"
#include "platform/TemporaryFolder.h"

namespace vlclientui::platform {
namespace {

namespace fs = std::filesystem;

class PosixSystemTest : public TemporaryFolder {
 protected:
  [[nodiscard]] PosixSystem system() const {
    const auto variables = variables_;
    return PosixSystem({PathTranslation(folder_), path("help"), registry_,
                        [variables](const std::string& name) -> std::optional<std::string> {
                          const auto found = variables.find(name);
                          return found == variables.end() ? std::nullopt : std::optional(found->second);
                        }});
  }

  [[nodiscard]] std::string decimalSeparator(const std::string& locale) {
    variables_["LC_ALL"] = locale;
    return system().localeFormat().decimalSeparator;
  }

  std::map<std::string, std::string> variables_;
  RegistryTable registry_;
};

TEST_F(PosixSystemTest, TheDocumentsFolderIsTheUsersChoice) {
  EXPECT_EQ(system().shellFolder(5), "C:\\");
  fs::create_directories(path("Documents"));
  EXPECT_EQ(system().shellFolder(5), "C:\\Documents");
  fs::create_directories(path(".config"));
  write(".config/user-dirs.dirs",
        "# comment\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n  XDG_DOCUMENTS_DIR=\"$HOME/Meine "
        "\\\"Akten\\\"/\"\n");
  EXPECT_EQ(system().shellFolder(5), "C:\\Meine \"Akten\"");
  EXPECT_EQ(system().shellFolder(0x10), "C:\\Schreibtisch");
  variables_["XDG_DOCUMENTS_DIR"] = "/srv/documents";
  EXPECT_EQ(system().shellFolder(5), "Z:\\srv\\documents");
  variables_["XDG_DOCUMENTS_DIR"] = "relative";
  EXPECT_EQ(system().shellFolder(5), "C:\\Meine \"Akten\"");
}

TEST_F(PosixSystemTest, BrokenChoicesOfFoldersMeanNothing) {
  fs::create_directories(path(".config"));
  for (const char* line :
       {"XDG_DOCUMENTS_DIR=", "XDG_DOCUMENTS_DIR=\"", "XDG_DOCUMENTS_DIR=\"x\"", "\"", "   "}) {
    write(".config/user-dirs.dirs", line);
    EXPECT_EQ(system().shellFolder(5), "C:\\") << line;
  }
}

TEST_F(PosixSystemTest, OtherFoldersAreKnownByIdentityOrNotAtAll) {
  EXPECT_EQ(system().shellFolder(0x1A), "C:\\.local\\share");
  EXPECT_EQ(system().shellFolder(0x28), "C:\\");
  EXPECT_EQ(system().shellFolder(9999), std::nullopt);
}

TEST_F(PosixSystemTest, AppDataFallsBackOnTheDocumentsFolder) {
  EXPECT_EQ(system().environment("APPDATA"), system().shellFolder(5));
  variables_["XDG_DOCUMENTS_DIR"] = "/papers";
  EXPECT_EQ(system().environment("APPDATA"), "Z:\\papers");
  variables_["APPDATA"] = path("own");
  EXPECT_EQ(system().environment("APPDATA"), "C:\\own");
  variables_["APPDATA"] = "C:\\given";
  EXPECT_EQ(system().environment("APPDATA"), "C:\\given");
}

TEST_F(PosixSystemTest, OtherVariablesComeAsTheyAre) {
  variables_["X"] = "/a b";
  EXPECT_EQ(system().environment("X"), "/a b");
  EXPECT_EQ(system().environment("Y"), std::nullopt);
}

TEST_F(PosixSystemTest, RegistryValuesComeFromTheTable) {
  registry_["HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Product\\Home"] = {1, "C:\\p", 0};
  registry_["HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\Product\\Count"] = {4, "", 7};
  PosixSystem tested = system();
  const auto key = tested.openRegistryKey(RegistryHive::HKEY_LOCAL_MACHINE, "Software\\MAKER\\Product");
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(key->query("home")->text, "C:\\p");
  EXPECT_EQ(key->query("Count")->number, 7U);
  EXPECT_FALSE(key->query("Missing").has_value());
  EXPECT_EQ(tested.openRegistryKey(RegistryHive::HKEY_CURRENT_USER, "SOFTWARE\\Maker\\Product"), nullptr);
  EXPECT_EQ(tested.openRegistryKey(RegistryHive::HKEY_LOCAL_MACHINE, "SOFTWARE\\Maker\\Prod"), nullptr);
}

TEST_F(PosixSystemTest, FoldersAreMadeUpToTheLastSeparator) {
  EXPECT_TRUE(system().makeSureDirectoryPathExists("C:\\a\\b\\file.txt"));
  EXPECT_TRUE(fs::is_directory(path("a/b")));
  EXPECT_FALSE(fs::exists(path("a/b/file.txt")));
  EXPECT_TRUE(system().makeSureDirectoryPathExists("C:\\c \\ "));
  EXPECT_EQ(names(), (std::set<std::string>{"a", "c"}));
  EXPECT_TRUE(system().makeSureDirectoryPathExists("C:\\c\\"));
}

TEST_F(PosixSystemTest, FoldersThatCannotBeAreNotMade) {
  write("file", "");
  EXPECT_FALSE(system().makeSureDirectoryPathExists("C:\\file\\x\\"));
  EXPECT_FALSE(system().makeSureDirectoryPathExists("C:\\file\\"));
  EXPECT_FALSE(system().makeSureDirectoryPathExists("D:\\x\\"));
}

TEST_F(PosixSystemTest, AListingNamesWhatIsThere) {
  fs::create_directories(path("folder"));
  write("folder/file", "12345");
  EXPECT_EQ(system().firstDirectoryEntry("C:\\folder"), "folder");
  EXPECT_EQ(system().firstDirectoryEntry("C:\\folder\\"), ".");
  EXPECT_EQ(system().firstDirectoryEntry("C:\\folder \\ "), ".");
  EXPECT_EQ(system().firstDirectoryEntry("C:\\folder\\file "), "file");
  EXPECT_EQ(system().firstDirectoryEntry("C:\\missing"), "");
  EXPECT_EQ(system().firstDirectoryEntry(""), "");
  EXPECT_EQ(system().firstDirectoryEntry("Z:\\"), ".");
  EXPECT_THROW((void)system().firstDirectoryEntry("D:\\"), RuntimeFailure);
}

TEST_F(PosixSystemTest, LengthsAreThoseOfFilesOnly) {
  write("file", "12345");
  write("empty", "");
  EXPECT_EQ(system().fileLength("C:\\file "), 5);
  EXPECT_EQ(system().fileLength(path("empty")), 0);
  EXPECT_THROW((void)system().fileLength("C:\\missing"), RuntimeFailure);
  EXPECT_THROW((void)system().fileLength("C:\\"), RuntimeFailure);
}

TEST_F(PosixSystemTest, TellsFilesFromFolders) {
  write("file", "");
  EXPECT_TRUE(system().fileExists("C:\\file "));
  EXPECT_FALSE(system().folderExists("C:\\file"));
  EXPECT_TRUE(system().folderExists("C:\\"));
  EXPECT_FALSE(system().fileExists("C:\\"));
  EXPECT_FALSE(system().fileExists("C:\\missing"));
  EXPECT_FALSE(system().folderExists("C:\\missing"));
  EXPECT_THROW((void)system().fileExists("D:\\file"), RuntimeFailure);
}

TEST_F(PosixSystemTest, AChangeOfTheLocaleIsSeenByTheSameObject) {
  std::string name = "de_DE.UTF-8";
  PosixSystem changing({PathTranslation(folder_), path("help"), registry_,
                        [&name](const std::string& variable) -> std::optional<std::string> {
                          return variable == "LC_ALL" ? std::optional(name) : std::nullopt;
                        }});
  EXPECT_EQ(changing.localeFormat().decimalSeparator, ",");
  name = "en_US.UTF-8";
  EXPECT_EQ(changing.localeFormat().decimalSeparator, ".");
  EXPECT_EQ(changing.userLocale(), 0x409);
}

TEST_F(PosixSystemTest, TheLocaleIsThatOfTheFirstVariableSet) {
  variables_["LANG"] = "de_DE.UTF-8";
  EXPECT_EQ(system().localeFormat().decimalSeparator, ",");
  variables_["LC_NUMERIC"] = "en_US.UTF-8";
  EXPECT_EQ(system().localeFormat().decimalSeparator, ".");
  variables_["LC_ALL"] = "fr-FR";
  EXPECT_EQ(system().localeFormat(), (LocaleFormat{",", "\u202F", "\u20AC"}));
  variables_["LC_ALL"] = "";
  EXPECT_EQ(system().localeFormat().decimalSeparator, ".");
}

TEST_F(PosixSystemTest, CommonLocalesAreKnownWithoutTheirFiles) {
  EXPECT_EQ(decimalSeparator("C"), ".");
  EXPECT_EQ(decimalSeparator("C.UTF-8"), ".");
  EXPECT_EQ(decimalSeparator("de_CH.UTF-8"), ".");
  EXPECT_EQ(system().localeFormat().groupSeparator, "\u2019");
  EXPECT_EQ(decimalSeparator("de"), ",");
  EXPECT_EQ(decimalSeparator("fr_XX@euro"), ",");
  EXPECT_EQ(decimalSeparator("xx_XX"), ".");
  EXPECT_EQ(decimalSeparator("../../etc/passwd"), ".");
}

TEST_F(PosixSystemTest, LocaleItemsAreAskedInTwoCalls) {
  variables_["LC_ALL"] = "de_CH.UTF-8";
  PosixSystem tested = system();
  EXPECT_EQ(tested.userLocale(), 0x807);
  std::string buffer = "unchanged";
  EXPECT_EQ(tested.localeInfo(0x807, 15, buffer, 0), 4);
  EXPECT_EQ(tested.localeInfo(0x807, 15, buffer, 3), 0);
  EXPECT_EQ(buffer, "unchanged");
  EXPECT_EQ(tested.localeInfo(0x807, 15, buffer, 4), 4);
  EXPECT_EQ(buffer, std::string("\u2019\0", 4));
  EXPECT_EQ(tested.localeInfo(0x407, 14, buffer, 2), 2);
  EXPECT_EQ(buffer, std::string(",\0", 2));
  EXPECT_EQ(tested.localeInfo(0x400, 14, buffer, 2), 2);
  EXPECT_EQ(buffer, std::string(".\0", 2));
  EXPECT_EQ(tested.localeInfo(0x407, 99, buffer, 9), 0);
  EXPECT_EQ(tested.localeInfo(0x1234, 14, buffer, 9), 0);
}

TEST_F(PosixSystemTest, PathsGoBothWays) {
  EXPECT_EQ(system().nativePath("C:\\x"), path("x"));
  EXPECT_EQ(system().logicPath(path("x")), "C:\\x");
}

/// A fake browser that writes its argument to a file beside itself.
class HelpLaunch : public PosixSystemTest {
 protected:
  HelpLaunch() {
    fs::create_directories(path("help"));
    write("help/A_page.htm", "<html/>");
    write("browser", "#!/bin/sh\nprintf %s \"$1\" > \"$0.tmp\"\nmv \"$0.tmp\" \"$0.told\"\n");
    fs::permissions(path("browser"), fs::perms::owner_all);
    variables_["BROWSER"] = path("browser") + ":other";
  }

  [[nodiscard]] bool isTold() const {
    for (int tries = 0; tries < 500 && !fs::exists(path("browser.told")); ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return fs::exists(path("browser.told"));
  }
};

TEST_F(HelpLaunch, OpensThePageInTheUsersBrowserAndLeavesNoChild) {
  system().launch("hh.exe C:\\Program Files\\Help\\Manual.chm::/A_page.htm");
  ASSERT_TRUE(isTold());
  EXPECT_EQ(read("browser.told"), path("help/A_page.htm"));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(HelpLaunch, AProgramThatIsNotThereGoesUnnoticed) {
  variables_["BROWSER"] = path("missing");
  EXPECT_NO_THROW(system().launch("hh.exe x.chm::/A_page.htm"));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(HelpLaunch, DoesNotWaitForTheBrowser) {
  // The browser blocks on the pipe, so a caller that waited for it would never return.
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  write("browser", "#!/bin/sh\nread line < '" + path("pipe") + "'\n");
  system().launch("hh.exe x.chm::/A_page.htm");
  std::ofstream(path("pipe")) << "go\n";
}

TEST(HelpLauncher, OnlyPlainPagesAreOpened) {
  EXPECT_EQ(helpPageOf("hh.exe C:\\x y\\M.chm::/Some_page-2.htm"), "Some_page-2");
  for (const char* command : {"", "hh.exe", "x::/.htm", "x::/../y.htm", "x::/a;b.htm", "x::/a b.htm",
                              "page.htm", "x::/a.html", "::/"}) {
    EXPECT_EQ(helpPageOf(command), std::nullopt) << command;
  }
}

TEST(HelpLauncher, TheBrowserIsTheUsersOrTheDesktops) {
  using Words = std::vector<std::string>;
  const auto with = [](const char* browser) {
    return openerOf("/f x", [browser](const std::string&) { return std::optional<std::string>(browser); });
  };
  EXPECT_EQ(with("lynx"), (Words{"lynx", "/f x"}));
  EXPECT_EQ(with("lynx -x --url=%s:other"), (Words{"lynx", "-x", "--url=/f x"}));
  EXPECT_EQ(with(""), (Words{"xdg-open", "/f x"}));
}

}  // namespace
}  // namespace vlclientui::platform
