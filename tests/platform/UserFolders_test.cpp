#include "platform/UserFolders.h"

#include <map>
#include <optional>

#include "platform/TemporaryFolder.h"

namespace vlclientui::platform {
namespace {

namespace fs = std::filesystem;

class UserFolders : public TemporaryFolder {
 protected:
  [[nodiscard]] Environment environment() const {
    return [variables = variables_](const std::string& name) -> std::optional<std::string> {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
  }
  [[nodiscard]] std::string documents() const { return documentsFolder(folder_, environment()); }
  [[nodiscard]] std::string desktop() const { return desktopFolder(folder_, environment()); }
  [[nodiscard]] std::string data() const { return dataFolder(folder_, environment()); }

  /// The file in which desktops keep where the folders are.
  void choose(const std::string& lines) const {
    fs::create_directories(path(".config"));
    write(".config/user-dirs.dirs", lines);
  }

  std::map<std::string, std::string> variables_;
};

TEST_F(UserFolders, AreTheHomeFolderWhereNothingIsThere) {
  EXPECT_EQ(documents(), folder_);
  EXPECT_EQ(desktop(), folder_);
}

TEST_F(UserFolders, HaveUsualNamesOnceTheseAreThere) {
  fs::create_directories(path("Documents"));
  fs::create_directories(path("Desktop"));
  EXPECT_EQ(documents(), path("Documents"));
  EXPECT_EQ(desktop(), path("Desktop"));
}

TEST_F(UserFolders, AFileOfTheUsualNameIsNoFolder) {
  write("Documents", "");
  EXPECT_EQ(documents(), folder_);
}

TEST_F(UserFolders, AreChosenInTheFileOfTheDesktopEvenIfTheyAreNotThere) {
  fs::create_directories(path("Documents"));
  choose("XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\nXDG_DESKTOP_DIR=\"/srv/desk\"\n");
  EXPECT_EQ(documents(), path("Papers"));
  EXPECT_EQ(desktop(), "/srv/desk");
}

TEST_F(UserFolders, MayBeTheHomeFolderItselfByChoice) {
  fs::create_directories(path("Documents"));
  choose("XDG_DOCUMENTS_DIR=\"$HOME\"\n");
  EXPECT_EQ(documents(), folder_);
  choose("XDG_DOCUMENTS_DIR=\"$HOME/\"\n");
  EXPECT_EQ(documents(), folder_);
}

TEST_F(UserFolders, TheLastOfSeveralLinesCounts) {
  choose("XDG_DOCUMENTS_DIR=\"/one\"\n#XDG_DOCUMENTS_DIR=\"/two\"\n\tXDG_DOCUMENTS_DIR=\"/three\"\n");
  EXPECT_EQ(documents(), "/three");
  choose("XDG_DOCUMENTS_DIR=\"/one\"\nXDG_DOCUMENTS_DIR=\"nowhere\"\n");
  EXPECT_EQ(documents(), "/one");
}

TEST_F(UserFolders, LinesOfOtherShapesMeanNothing) {
  for (const char* line :
       {"XDG_DOCUMENTS_DIR=/bare", "XDG_DOCUMENTS_DIR='/single'", "XDG_DOCUMENTS_DIR = \"/spaced\"",
        "xdg_documents_dir=\"/small\"", "MY_XDG_DOCUMENTS_DIR=\"/other\"", "XDG_DOCUMENTS_DIRS=\"/more\"",
        "XDG_DOCUMENTS_DIR=\"$HOMER/x\"", "XDG_DOCUMENTS_DIR=\"~/x\"", "XDG_DOCUMENTS_DIR=\"/open",
        "export XDG_DOCUMENTS_DIR=\"/exported\"", ""}) {
    choose(line);
    EXPECT_EQ(documents(), folder_) << line;
  }
}

TEST_F(UserFolders, CharactersOfTheFileMayBeEscaped) {
  choose("XDG_DOCUMENTS_DIR=\"$HOME/a \\\"b\\\" \\$c \\\\d\"\n");
  EXPECT_EQ(documents(), path("a \"b\" $c \\d"));
  choose("XDG_DOCUMENTS_DIR=\"/ends\\\\\"\n");
  EXPECT_EQ(documents(), "/ends\\");
}

TEST_F(UserFolders, TheFileMayLieInAnotherFolderOfSettings) {
  fs::create_directories(path("settings"));
  write("settings/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/chosen\"\n");
  choose("XDG_DOCUMENTS_DIR=\"/usual\"\n");
  variables_["XDG_CONFIG_HOME"] = path("settings/");
  EXPECT_EQ(documents(), "/chosen");
  variables_["XDG_CONFIG_HOME"] = "settings";
  EXPECT_EQ(documents(), "/usual");
}

TEST_F(UserFolders, TheEnvironmentWinsOverTheFile) {
  choose("XDG_DOCUMENTS_DIR=\"/chosen\"\nXDG_DESKTOP_DIR=\"/desk\"\n");
  variables_["XDG_DOCUMENTS_DIR"] = "/told///";
  EXPECT_EQ(documents(), "/told");
  EXPECT_EQ(desktop(), "/desk");
  variables_["XDG_DOCUMENTS_DIR"] = "/";
  EXPECT_EQ(documents(), "/");
  for (const char* value : {"", "told", "./told", "~/told"}) {
    variables_["XDG_DOCUMENTS_DIR"] = value;
    EXPECT_EQ(documents(), "/chosen") << value;
  }
}

TEST_F(UserFolders, OfDataLieBelowTheHomeFolderOrWhereTheEnvironmentTells) {
  EXPECT_EQ(data(), path(".local/share"));
  variables_["XDG_DATA_HOME"] = "/data/";
  EXPECT_EQ(data(), "/data");
  variables_["XDG_DATA_HOME"] = "data";
  EXPECT_EQ(data(), path(".local/share"));
}

TEST_F(UserFolders, AFileThatIsNoFileIsNone) {
  fs::create_directories(path(".config/user-dirs.dirs"));
  EXPECT_EQ(documents(), folder_);
}

}  // namespace
}  // namespace vlclientui::platform
